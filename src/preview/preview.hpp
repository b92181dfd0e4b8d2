// The visual preview of an ECU document: one self-contained HTML page (inline CSS and SVG, no
// script, no external resource) that shows the ECU's identity and communication parameters, its
// data items, its requests with the byte-and-bit layout of the data they carry, its devices and
// their tests, and every screen drawn to scale with its labels, displays and buttons.
//
// Rendering only reads the model, with one exception that comes from the model itself: reading
// a device's Tests creates an empty test list on a device that has none (see
// OrganeItem::Tests).
//
// Thread safety: none; the page is rendered from the thread that owns the facade.
#ifndef TESSALY_SRC_PREVIEW_PREVIEW_HPP_
#define TESSALY_SRC_PREVIEW_PREVIEW_HPP_

#include <string>
#include <vector>

namespace tessaly {
class TessalyLibXml;
}

namespace tessaly::preview {

struct PreviewOptions {
  // Where the document came from, shown in the page's header; empty shows nothing.
  std::string source;
  // Lines of the loading report (warnings, event-log entries, dropped and repaired elements,
  // the error the import raised), shown in their own section when there is any.
  std::vector<std::string> loadReport;
  // Scale of the screen drawings; 1 draws 15 twips to a pixel (96 dpi).
  double zoom = 1.0;
  // When both are set, the page shows only that screen of that category (with its legend).
  std::string onlyCategory;
  std::string onlyScreen;
};

// The page for the facade's active target. Throws Error 91 when there is no active target, and
// Error 1 (source "tessaly.preview") when `onlyCategory`/`onlyScreen` name no screen or the
// zoom is not a positive number.
std::string RenderPreview(const TessalyLibXml& lib, const PreviewOptions& options = {});

}  // namespace tessaly::preview

#endif  // TESSALY_SRC_PREVIEW_PREVIEW_HPP_
