// The data items as one table: name, mnemonic, width, sign, scaling or value list, unit and
// format, comment. Each row is the anchor other sections link to.
#include "preview/format.hpp"
#include "preview/page.hpp"
#include "tessaly/common/convert.hpp"

namespace tessaly::preview {
namespace {

// Value lists longer than this are folded.
constexpr std::int32_t kShortList = 12;

void WriteValueList(Page& page, const DataItem& data) {
  const auto& list = data.DataListes();
  if (!list || list->Count() == 0) {
    page << "<span class=\"note\">value list, empty</span>";
    return;
  }
  const bool fold = list->Count() > kShortList;
  if (fold) page << "<details><summary>" << IntText(list->Count()) << " values</summary>";
  page << "<ul class=\"values\">";
  for (const auto& entry : *list) {
    page << "<li><code>" << IntText(entry->Valeur()) << "</code> \xE2\x86\x92 ";  // →
    page.Text(entry->libelle());
    if (!entry->Info().empty()) {
      page << " <span class=\"note\">(";
      page.Text(entry->Info()) << ")</span>";
    }
    page << "</li>";
  }
  page << "</ul>";
  if (fold) page << "</details>";
}

void WriteRow(Page& page, const DataItem& data) {
  page << "<tr";
  page.Attr("id", page.DataAnchor(data));
  page << "><td><code>";
  page.Text(data.dataName()) << "</code></td><td>";
  page.Text(data.Mnemo()) << "</td><td>";
  page.Text(SizeText(data.numerique(), data.NumberBits()));
  if (!data.numerique() && data.Ascii()) page << ", ASCII text";
  page << "</td><td>" << (data.numerique() ? (data.Signe() ? "signed" : "unsigned") : "") << "</td><td>";
  if (!data.numerique()) {
    page << "<span class=\"note\">bytes</span>";
  } else if (data.liste()) {
    WriteValueList(page, data);
  } else {
    page << "<code>";
    page.Text(ScalingFormula(data.CoeffA(), data.CoeffB(), data.CoeffC())) << "</code>";
  }
  page << "</td><td>";
  if (data.numerique() && !data.liste()) page.Text(data.Unite());
  page << "</td><td>";
  if (data.numerique() && !data.liste()) page.Text(data.DataFormat());
  page << "</td><td>";
  page.Text(data.Description());
  if (!data.Fiche().empty()) {
    page << "<details><summary>description</summary>";
    page.Text(data.Fiche()) << "</details>";
  }
  page << "</td></tr>\n";
}

}  // namespace

void WriteDataSection(Page& page) {
  const auto& datas = page.target().datas();
  const std::size_t count = datas ? static_cast<std::size_t>(datas->Count()) : 0;
  page << "<details class=\"section\" id=\"data\" open><summary>Data <span class=\"count\">(" << IntText(static_cast<std::int64_t>(count))
       << ")</span></summary>\n";
  if (count == 0) {
    page << "<p class=\"note\">No data items.</p></details>\n";
    return;
  }
  page << "<p class=\"note\">Scaling: the physical value of a raw value x is (x \xC3\x97 Step + Offset) \xC3\xB7 "
          "DivideBy.</p><table class=\"data\"><tr><th>Name</th><th>Mnemonic</th><th>Size</th><th>Sign</th>"
          "<th>Scaling / values</th><th>Unit</th><th>Format</th><th>Comment</th></tr>\n";
  for (const auto& data : *datas) WriteRow(page, *data);
  page << "</table></details>\n";
}

}  // namespace tessaly::preview
