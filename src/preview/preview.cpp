#include "preview/preview.hpp"

#include <cmath>
#include <string_view>

#include "preview/format.hpp"
#include "preview/page.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly::preview {
namespace {

constexpr const char* kSource = "tessaly.preview";

// The page's whole style sheet: print-friendly, no external resource.
constexpr std::string_view kStyle = R"css(
:root { --ink: #1d2330; --muted: #5b6475; --rule: #d5d9e0; --band: #f3f5f8; --link: #1a56a8; --bad: #b3261e; }
* { box-sizing: border-box; }
body { margin: 0; font: 14px/1.45 system-ui, -apple-system, "Segoe UI", Roboto, "DejaVu Sans", sans-serif; color: var(--ink); }
header.ecu { padding: 16px 24px; background: #20304a; color: #fff; }
header.ecu h1 { margin: 0 0 4px; font-size: 24px; }
header.ecu .sub { color: #c9d3e3; }
section.summary { padding: 8px 24px 0; }
main { padding: 8px 24px 40px; }
nav.toc { position: sticky; top: 0; z-index: 2; background: #fff; border-bottom: 1px solid var(--rule); padding: 6px 24px; }
nav.toc a { margin-right: 14px; }
a { color: var(--link); text-decoration: none; }
a:hover { text-decoration: underline; }
h2 { font-size: 19px; margin: 0; display: inline; }
details.section { margin-top: 18px; border-top: 2px solid #20304a; padding-top: 6px; }
details > summary { cursor: pointer; }
details.section > summary { font-size: 19px; font-weight: 600; padding: 4px 0; }
.count { color: var(--muted); font-weight: normal; }
table { border-collapse: collapse; margin: 6px 0; }
th, td { border: 1px solid var(--rule); padding: 3px 7px; text-align: left; vertical-align: top; }
th { background: var(--band); font-weight: 600; }
table.props th { width: 190px; }
table.counts td.n { text-align: right; font-variant-numeric: tabular-nums; }
tr:target, div:target { outline: 3px solid #f0b429; }
code, .bytes { font-family: "DejaVu Sans Mono", Consolas, monospace; }
.missing { color: var(--bad); text-decoration: underline wavy; }
.note { color: var(--muted); font-size: 12px; }
.warn { color: var(--bad); }
.tag { display: inline-block; padding: 0 6px; margin: 1px 2px 1px 0; border-radius: 8px; background: #e3e8f0; font-size: 12px; }
.tag.no { background: #f6d4d1; }
.tag.yes { background: #d4ecd9; }
.swatch { display: inline-block; width: 14px; height: 14px; border: 1px solid #555; vertical-align: -2px; margin-right: 4px; }
ul.values, ol.steps { margin: 0; padding-left: 18px; }
details.item { margin: 8px 0; border: 1px solid var(--rule); border-radius: 4px; padding: 4px 10px; }
details.item > summary { font-weight: 600; }
details.category { margin: 10px 0; }
details.category > summary { font-size: 17px; font-weight: 600; }
div.screen { margin: 10px 0 22px; }
div.screen h3 { font-size: 16px; margin: 6px 0 2px; }
div.screen-row { display: flex; flex-wrap: wrap; gap: 16px; align-items: flex-start; }
svg.screen-drawing { border: 1px solid #444; box-shadow: 0 2px 6px rgba(0,0,0,.25); flex: none; }
div.legend { flex: 1 1 420px; min-width: 320px; overflow-x: auto; }
div.legend table { font-size: 13px; }
td.nw { white-space: nowrap; }
svg.bytes-diagram { display: block; margin: 4px 0 8px; font-family: "DejaVu Sans", Arial, sans-serif; }
svg.definitions { position: absolute; }
.bytes-diagram .rl, .bytes-diagram .bn { font-size: 10px; fill: #5b6475; }
.bytes-diagram .hx { font: bold 11px "DejaVu Sans Mono", monospace; text-anchor: end; }
.bytes-diagram .f { fill-opacity: .85; stroke: #4a5568; stroke-width: 1; }
.bytes-diagram .f.ref { stroke: #000; stroke-width: 2.5; }
.bytes-diagram .f0 { fill: #8ecae6; } .bytes-diagram .f1 { fill: #ffb703; } .bytes-diagram .f2 { fill: #90be6d; }
.bytes-diagram .f3 { fill: #f4a3a8; } .bytes-diagram .f4 { fill: #cdb4db; } .bytes-diagram .f5 { fill: #f9c74f; }
.bytes-diagram .f6 { fill: #80ced7; } .bytes-diagram .f7 { fill: #e5989b; } .bytes-diagram .f8 { fill: #a3c4bc; }
.bytes-diagram .f9 { fill: #ffd6a5; }
.bytes-diagram .fl { font-size: 10px; }
.bytes-diagram .ms { font-size: 8px; text-anchor: end; fill: #333; }
.loading li { font-family: "DejaVu Sans Mono", Consolas, monospace; font-size: 12px; }
footer { color: var(--muted); font-size: 12px; padding: 12px 24px; border-top: 1px solid var(--rule); }
@media print { nav.toc { position: static; } details > summary { list-style: none; } }
)css";

void CheckOptions(const PreviewOptions& options) {
  if (!(options.zoom > 0) || !std::isfinite(options.zoom))
    Raise(errc::kModel, kSource, "The zoom must be a positive number");
}

// The screen that a single-screen page shows, with its category and position key.
struct ScreenChoice {
  std::shared_ptr<CategoryItem> category;
  std::shared_ptr<ScreenItem> screen;
  std::string key;
};

ScreenChoice FindScreen(const TargetItem& target, const PreviewOptions& options) {
  std::int32_t c = 0;
  if (const auto& categories = target.Categories()) {
    for (const auto& category : *categories) {
      ++c;
      if (category->categoryName() != options.onlyCategory || !category->Screens()) continue;
      std::int32_t s = 0;
      for (const auto& screen : *category->Screens()) {
        ++s;
        if (screen->screenName() == options.onlyScreen)
          return ScreenChoice{category, screen, "c" + IntText(c) + "s" + IntText(s)};
      }
    }
  }
  Raise(errc::kModel, kSource,
        "No screen '" + options.onlyScreen + "' in a category '" + options.onlyCategory + "'");
}

void WriteLoadReport(Page& page) {
  const auto& report = page.options().loadReport;
  if (report.empty()) return;
  page.OpenDetails("loading", "section loading", "Loading report", report.size());
  page << "<p class=\"note\">What the library reported while it loaded the document: dropped and repaired "
          "elements, warnings, event-log entries and the error it raised. The page shows the document as "
          "loaded.</p><ul>";
  for (const std::string& line : report) {
    page << "<li>";
    page.Text(line);
    page << "</li>";
  }
  page << "</ul></details>\n";
}

void WriteAutoIdents(Page& page) {
  const auto& idents = page.target().AutoIdents();
  if (!idents || idents->Count() == 0) return;
  page.OpenDetails("auto-idents", "section", "Auto-identification", static_cast<std::size_t>(idents->Count()));
  page << "<table><tr><th>Diagnostic version</th><th>Supplier</th><th>Software</th><th>Version</th></tr>";
  for (const auto& ident : *idents) {
    page << "<tr><td>" << IntText(ident->DiagNumber()) << "</td><td>";
    page.Text(ident->SupplierCode()) << "</td><td>";
    page.Text(ident->Soft()) << "</td><td>";
    page.Text(ident->Version()) << "</td></tr>";
  }
  page << "</table></details>\n";
}

void WriteNav(Page& page) {
  page << "<nav class=\"toc\"><a href=\"#ecu\">ECU</a><a href=\"#data\">Data</a><a href=\"#requests\">Requests</a>"
          "<a href=\"#devices\">Devices</a><a href=\"#screens\">Screens</a>";
  const auto& idents = page.target().AutoIdents();
  if (idents && idents->Count() != 0) page << "<a href=\"#auto-idents\">Auto-identification</a>";
  if (!page.options().loadReport.empty()) page << "<a href=\"#loading\">Loading report</a>";
  page << "</nav>\n";
}

std::string PageTitle(const TargetItem& target, const ScreenItem* screen) {
  std::string title = target.name().empty() ? "ECU" : target.name();
  if (screen != nullptr) title += " \xE2\x80\x93 " + screen->screenName();  // –
  return title + " \xE2\x80\x93 Tessaly preview";
}

}  // namespace

std::string RenderPreview(const TessalyLibXml& lib, const PreviewOptions& options) {
  const std::shared_ptr<TargetItem> target = lib.ActiveTarget();
  if (!target) RaisePlatform(errc::kObjectNotSet);
  CheckOptions(options);
  const bool single = !options.onlyCategory.empty() || !options.onlyScreen.empty();
  ScreenChoice choice;
  if (single) choice = FindScreen(*target, options);

  Page page(lib, target, options);
  page.set_links(!single);  // a single screen's page has no data or request sections to link to
  page.out().reserve(1U << 16U);
  page << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
          "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
          "<meta name=\"generator\" content=\"tessaly preview\">\n<title>";
  page.Text(PageTitle(*target, choice.screen.get()));
  page << "</title>\n<style>" << kStyle << "</style>\n</head>\n<body>\n";
  if (single) {
    page << "<main class=\"single\"><p class=\"note\">";
    page.Text((target->name().empty() ? std::string("(ECU without a name)") : target->name()) +
              " \xE2\x80\x93 category " + choice.category->categoryName());
    page << "</p>\n";
    WriteScreen(page, *choice.screen, *choice.category, choice.key);
    page << "</main>\n";
  } else {
    WriteHeader(page);
    WriteNav(page);
    page << "<main>\n";
    WriteLoadReport(page);
    WriteDataSection(page);
    WriteRequestSection(page);
    WriteDeviceSection(page);
    WriteScreenSection(page);
    WriteAutoIdents(page);
    page << "</main>\n<footer>Drawn by <code>tessaly preview</code>. Screen geometry is in twips, drawn 15 to a "
            "pixel";
    if (options.zoom != 1.0) page << " at zoom " << NumberText(options.zoom);
    page << "; colours are decoded from 0x00BBGGRR values.</footer>\n";
  }
  page << "</body>\n</html>\n";
  return std::move(page.out());
}

}  // namespace tessaly::preview
