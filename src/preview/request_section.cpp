// The requests: sent and reply bytes, flags and access rights, and for each side a diagram of
// the bytes and bits that the placed data occupy.
#include <algorithm>
#include <optional>
#include <vector>

#include "preview/format.hpp"
#include "preview/layout.hpp"
#include "preview/page.hpp"
#include "tessaly/common/convert.hpp"

namespace tessaly::preview {
namespace {

// Diagrams stop after this many bytes; fields beyond are listed, not drawn.
constexpr std::int32_t kMaxDiagramBytes = 256;

std::string Num(double value) { return NumberText(value); }

// Fields take the colours f0 .. f9 of the page's style sheet in turn.
constexpr std::size_t kFieldColours = 10;

// The id of the drawing of one byte (frame, bit separators, bit numbers) that every diagram uses.
constexpr const char* kByteFrame = "byte-frame";

// The shared drawings of the diagrams, written once before the requests.
void WriteDiagramDefinitions(Page& page) {
  const ByteGrid grid;
  const std::string id = page.ids().Unique(kByteFrame);
  page << "<svg class=\"definitions\" width=\"0\" height=\"0\" aria-hidden=\"true\"><defs><g";
  page.Attr("id", id);
  page << "><rect x=\"0\" y=\"" << Num(grid.headerHeight) << "\" width=\"" << Num(8 * grid.bitWidth) << "\" height=\""
       << Num(grid.cellHeight) << "\" fill=\"#fafbfc\" stroke=\"#9aa3b2\"/><path stroke=\"#dde1e7\" d=\"";
  for (int bit = 6; bit >= 0; --bit)
    page << "M" << Num(grid.BitX(1, bit) - grid.left) << " " << Num(grid.headerHeight) << "v" << Num(grid.cellHeight);
  page << "\"/><g font-size=\"8\" text-anchor=\"middle\" fill=\"#8a93a3\" font-family=\"DejaVu Sans, Arial, "
          "sans-serif\">";
  for (int bit = 7; bit >= 0; --bit)
    page << "<text x=\"" << Num(grid.BitX(1, bit) - grid.left + grid.bitWidth / 2) << "\" y=\"22\">" << IntText(bit)
         << "</text>";
  page << "</g></g></defs></svg>\n";
}

struct Field {
  std::shared_ptr<DataPositionItem> position;
  std::shared_ptr<DataItem> data;
  FieldLayout layout;
  std::vector<std::string> notes;
};

bool EcuLittleEndian(const Page& page) {
  const auto& params = page.target().Parametres();
  return params && params->LittleEndian();
}

std::string FieldTitle(const Field& field, bool ecuLittle) {
  const DataPositionItem& p = *field.position;
  std::string title = p.dataName() + ": byte " + IntText(p.StartOctet()) + ", bit " + IntText(p.StartBit());
  if (field.data) title += ", " + SizeText(field.data->numerique(), field.data->NumberBits());
  title += p.LittleEndian() ? ", little-endian" : ", big-endian";
  if (p.LittleEndian() == ecuLittle) title += " (ECU default)";
  if (p.reference()) title += ", reference";
  return title;
}

void WriteDiagram(Page& page, const RequestItem& request, const char* side, const std::vector<Field>& fields,
                  const std::optional<std::vector<std::uint8_t>>& bytes, std::int32_t byteCount) {
  const ByteGrid grid;
  const double width = grid.Width(byteCount);
  const double height = grid.Height(byteCount);
  const bool ecuLittle = EcuLittleEndian(page);
  page << "<svg class=\"bytes-diagram\" xmlns=\"http://www.w3.org/2000/svg\"";
  page.Attr("width", Num(width)).Attr("height", Num(height)).Attr("viewBox", "0 0 " + Num(width) + " " + Num(height));
  page.Attr("data-request", request.requestName()).Attr("data-side", side);
  page << ">";
  // Byte frames (the shared drawing of one byte, with its bit numbers), each with its number and
  // value above it, and the number of the first byte of each row at the left.
  for (std::int32_t byte = 1; byte <= byteCount; ++byte) {
    const double x = grid.ByteX(byte);
    const double top = grid.RowTop(byte);
    if ((byte - 1) % grid.bytesPerRow == 0)
      page << "<text class=\"rl\" x=\"2\" y=\"" << Num(top + grid.headerHeight + grid.cellHeight / 2 + 4)
           << "\">byte " << IntText(byte) << "</text>";
    page << "<use href=\"#" << kByteFrame << "\" x=\"" << Num(x) << "\" y=\"" << Num(top) << "\"/><text class=\"bn\" x=\""
         << Num(x + 2) << "\" y=\"" << Num(top + 10) << "\">#" << IntText(byte) << "</text>";
    if (bytes && static_cast<std::size_t>(byte) <= bytes->size())
      page << "<text class=\"hx\" x=\"" << Num(x + 8 * grid.bitWidth - 2) << "\" y=\"" << Num(top + 10) << "\">"
           << HexText((*bytes)[static_cast<std::size_t>(byte - 1)], 2).substr(2) << "</text>";
  }
  // The fields.
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Field& field = fields[i];
    if (!field.layout.valid || field.layout.spans.empty()) continue;
    const DataPositionItem& p = *field.position;
    const bool multi = field.layout.spans.size() > 1;
    const std::size_t most = MostSignificantSpan(field.layout, p.LittleEndian());
    const std::size_t least = LeastSignificantSpan(field.layout, p.LittleEndian());
    const std::string rectClass = "f f" + IntText(static_cast<std::int64_t>(i % kFieldColours)) + (p.reference() ? " ref" : "");
    page << "<g class=\"field\"";
    page.Attr("data-field", p.dataName());
    page << "><title>";
    page.Text(FieldTitle(field, ecuLittle)) << "</title>";
    for (std::size_t s = 0; s < field.layout.spans.size(); ++s) {
      const Box box = grid.SpanBox(field.layout.spans[s]);
      page << "<svg x=\"" << Num(box.x) << "\" y=\"" << Num(box.y) << "\" width=\"" << Num(box.width)
           << "\" height=\"" << Num(box.height) << "\"><rect class=\"" << rectClass << "\" x=\"1\" y=\"1\" width=\""
           << Num(box.width - 2) << "\" height=\"" << Num(box.height - 2) << "\" rx=\"3\"/>";
      if (s == 0) {
        page << "<text class=\"fl\" x=\"4\" y=\"" << Num(box.height - 7) << "\">";
        if (p.reference()) page << "\xE2\x98\x85";  // ★
        page.Text(p.dataName()) << "</text>";
      }
      if (multi && (s == most || s == least))
        page << "<text class=\"ms\" x=\"" << Num(box.width - 3) << "\" y=\"10\">" << (s == most ? "MSB" : "LSB")
             << "</text>";
      page << "</svg>";
    }
    page << "</g>";
  }
  page << "</svg>\n";
}

void WriteFieldTable(Page& page, const std::vector<Field>& fields) {
  const bool ecuLittle = EcuLittleEndian(page);
  page << "<table class=\"fields\"><tr><th>Data</th><th>Byte</th><th>Bit</th><th>Size</th><th>Byte order</th>"
          "<th>Reference</th><th>Notes</th></tr>";
  for (const Field& field : fields) {
    const DataPositionItem& p = *field.position;
    page << "<tr><td>";
    page.DataLink(p.dataName());
    page << "</td><td>" << IntText(p.StartOctet()) << "</td><td>" << IntText(p.StartBit()) << "</td><td>";
    if (field.data) page.Text(SizeText(field.data->numerique(), field.data->NumberBits()));
    page << "</td><td>" << (p.LittleEndian() ? "little-endian" : "big-endian");
    if (p.LittleEndian() == ecuLittle) page << " <span class=\"note\">(ECU default)</span>";
    page << "</td><td>" << (p.reference() ? "\xE2\x98\x85 yes" : "") << "</td><td>";
    for (const std::string& note : field.notes) {
      page << "<div class=\"warn\">";
      page.Text(note) << "</div>";
    }
    page << "</td></tr>";
  }
  page << "</table>\n";
}

// One side of a request: its bytes, the diagram and the table of its placements.
void WriteSide(Page& page, const RequestItem& request, bool param) {
  const std::shared_ptr<ByteString>& text = param ? request.RequestBytes() : request.ReplyBytes();
  std::optional<std::vector<std::uint8_t>> bytes;
  if (text) bytes = text->Bytes();
  std::vector<Field> fields;
  if (request.DataPositions())
    for (const auto& position : *request.DataPositions()) {
      if (position->param() != param) continue;
      Field field;
      field.position = position;
      field.data = page.FindData(position->dataName());
      const std::int32_t bits = field.data ? field.data->NumberBits() : 0;
      field.layout = PlaceField(position->StartOctet(), position->StartBit(), bits, kMaxDiagramBytes);
      if (!field.data) field.notes.emplace_back("no data item of this name: not drawn");
      else if (!field.layout.valid) field.notes.emplace_back("this placement cannot be drawn");
      else if (field.layout.truncated) field.notes.emplace_back("beyond the drawn bytes");
      fields.push_back(std::move(field));
    }
  std::vector<FieldLayout> layouts;
  for (const Field& field : fields) layouts.push_back(field.layout);
  for (const auto& [a, b] : FindOverlaps(layouts)) {
    fields[a].notes.push_back("shares bits with " + fields[b].position->dataName());
    fields[b].notes.push_back("shares bits with " + fields[a].position->dataName());
  }

  std::int64_t lastByte = 0;
  for (const Field& field : fields)
    if (field.layout.valid) lastByte = std::max(lastByte, field.layout.lastByte);
  const std::int64_t inString = bytes ? static_cast<std::int64_t>(bytes->size()) : 0;
  const std::int64_t minBytes = param ? 0 : request.LengthDatas();

  page << "<h4>" << (param ? "Sent" : "Reply") << " \xE2\x80\x93 "
       << (param ? "parameters" : "data read from the reply") << " <span class=\"count\">(" << IntText(std::ssize(fields))
       << ")</span></h4>";
  if (text && !text->ToText().empty() && !bytes)
    page << "<p class=\"note\">The bytes text is not hex pairs; byte values are not shown.</p>";
  if (fields.empty() && inString == 0) {
    page << "<p class=\"note\">No bytes and no data.</p>";
    return;
  }
  const std::int32_t byteCount = DrawnByteCount(inString, lastByte, minBytes, kMaxDiagramBytes);
  WriteDiagram(page, request, param ? "sent" : "reply", fields, bytes, byteCount);
  if (!fields.empty()) WriteFieldTable(page, fields);
}

void Tag(Page& page, const char* name, bool granted) {
  page << "<span class=\"tag " << (granted ? "yes" : "no") << "\">" << name << (granted ? " \xE2\x9C\x93" : " \xE2\x9C\x97")
       << "</span>";
}

void WriteRequest(Page& page, const RequestItem& request, bool open) {
  const std::string sent = request.RequestBytes() ? request.RequestBytes()->ToText() : "";
  const std::string reply = request.ReplyBytes() ? request.ReplyBytes()->ToText() : "";
  page << "<details class=\"item request\"";
  page.Attr("id", page.RequestAnchor(request));
  if (open) page << " open";
  page << "><summary>";
  page.Text(request.requestName()) << " <code class=\"bytes\">";
  page.Text(sent) << "</code>";
  if (!reply.empty()) page.Text(" \xE2\x86\x92 ") << "<code class=\"bytes\">";  // →
  page.Text(reply) << (reply.empty() ? "" : "</code>") << "</summary>";
  page << "<table class=\"props\"><tr><th>Minimum reply length</th><td>" << IntText(request.LengthDatas())
       << (request.LengthDatas() == 1 ? " byte" : " bytes") << "</td></tr>";
  if (request.ShiftBytesCount() != 0)
    page << "<tr><th>Reply shifted by</th><td>" << IntText(request.ShiftBytesCount()) << " bytes</td></tr>";
  page << "<tr><th>Sending</th><td>" << (request.ManuelSend() ? "on explicit demand only" : "automatic")
       << (request.LgVariable() ? " <span class=\"tag\">variable length</span>" : "")
       << (request.DossierMaintenabilite() ? " <span class=\"tag\">maintainability file</span>" : "")
       << "</td></tr><tr><th>Access</th><td>";
  if (request.AccesTous() && request.AccesUsine() && request.AccesApresVente() && request.AccesEtudes() &&
      request.AccesConstructeur()) {
    page << "<span class=\"tag yes\">all granted \xE2\x9C\x93</span>";
  } else {
    Tag(page, "all users", request.AccesTous());
    Tag(page, "plant", request.AccesUsine());
    Tag(page, "after-sales", request.AccesApresVente());
    Tag(page, "engineering", request.AccesEtudes());
    Tag(page, "supplier", request.AccesConstructeur());
  }
  page << "</td></tr>";
  if (!request.Commentaire().empty()) {
    page << "<tr><th>Comment</th><td>";
    page.Text(request.Commentaire()) << "</td></tr>";
  }
  page << "</table>";
  WriteSide(page, request, true);
  WriteSide(page, request, false);
  page << "</details>\n";
}

}  // namespace

void WriteRequestSection(Page& page) {
  const auto& requests = page.target().Requests();
  const std::size_t count = requests ? static_cast<std::size_t>(requests->Count()) : 0;
  page << "<details class=\"section\" id=\"requests\" open><summary>Requests <span class=\"count\">("
       << IntText(static_cast<std::int64_t>(count)) << ")</span></summary>\n";
  if (count == 0) {
    page << "<p class=\"note\">No requests.</p></details>\n";
    return;
  }
  page << "<p class=\"note\">Byte diagrams: bytes are numbered from 1 and their bits from 7 (most significant, left) "
          "to 0. A data item starts at its bit offset and runs towards the most significant bit, then on into the "
          "next byte. MSB and LSB mark the ends of a multi-byte data item by its byte order; \xE2\x98\x85 and a "
          "heavy outline mark reference placements. The byte values above the cells come from the request's bytes "
          "text.</p>\n";
  WriteDiagramDefinitions(page);
  const bool open = count <= kOpenLimit;
  for (const auto& request : *requests) WriteRequest(page, *request, open);
  page << "</details>\n";
}

}  // namespace tessaly::preview
