// The state shared by the sections of one preview page: the model being shown, the HTML being
// written, and the anchors of the items that other sections link to.
#ifndef TESSALY_SRC_PREVIEW_PAGE_HPP_
#define TESSALY_SRC_PREVIEW_PAGE_HPP_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "preview/html.hpp"
#include "preview/preview.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly::preview {

// Lists longer than this start folded.
inline constexpr std::size_t kOpenLimit = 40;

class Page {
 public:
  Page(const TessalyLibXml& lib, const std::shared_ptr<TargetItem>& target, const PreviewOptions& options);

  const TessalyLibXml& lib() const { return lib_; }
  TargetItem& target() const { return *target_; }
  const PreviewOptions& options() const { return options_; }
  std::string& out() { return out_; }
  IdRegistry& ids() { return ids_; }

  // Raw markup.
  Page& operator<<(std::string_view markup) {
    out_ += markup;
    return *this;
  }
  // Escaped text content.
  Page& Text(std::string_view text) {
    AppendText(out_, text);
    return *this;
  }
  // ` name="value"`, the value escaped.
  Page& Attr(std::string_view name, std::string_view value) {
    AppendAttr(out_, name, value);
    return *this;
  }

  // The items the page links to, found by name the way the model finds them (letter case
  // ignored); null when there is none.
  std::shared_ptr<DataItem> FindData(std::string_view name) const;
  std::shared_ptr<RequestItem> FindRequest(std::string_view name) const;

  // Anchors of items (given once, when their section writes them).
  const std::string& DataAnchor(const DataItem& data);
  const std::string& RequestAnchor(const RequestItem& request);
  const std::string& DeviceAnchor(const OrganeItem& device);

  // A link to the data item / request of that name, showing the name as the document writes
  // it; a name that resolves to nothing is shown marked as missing. Without links (a page that
  // shows one screen only) the name is shown alone.
  void DataLink(std::string_view name);
  void RequestLink(std::string_view name);
  void set_links(bool value) { links_ = value; }

  // A colour swatch followed by its hex form, or with `full` its whole label (ColourLabel); the
  // swatch's tooltip always gives the whole label.
  void Swatch(std::int32_t packed, bool full = false);

  // `<details` with id and class, open unless `count` exceeds kOpenLimit or `folded` is set, and
  // a summary holding `title` (escaped) and the count.
  void OpenDetails(std::string_view id, std::string_view cssClass, std::string_view title, std::size_t count,
                   bool showCount = true, bool folded = false);

 private:
  const std::string& Anchor(std::unordered_map<const void*, std::string>& map, const void* item,
                            std::string_view prefix, std::string_view name);

  const TessalyLibXml& lib_;
  std::shared_ptr<TargetItem> target_;
  const PreviewOptions& options_;
  std::string out_;
  IdRegistry ids_;
  std::unordered_map<const void*, std::string> dataAnchors_;
  std::unordered_map<const void*, std::string> requestAnchors_;
  std::unordered_map<const void*, std::string> deviceAnchors_;
  bool links_ = true;
};

// What a display shows, resolved through the target the way the model resolves it: the names of
// its data and request, the data item, and whether it is an input field (a request display read
// as Input, or a data display whose data is a parameter of its request).
struct DisplayView {
  bool input = false;
  bool byRequest = false;
  std::string dataName;
  std::string requestName;
  std::shared_ptr<DataItem> data;
};
DisplayView ViewOf(const Page& page, const DisplayItem& display);

// The sections, in page order.
void WriteHeader(Page& page);
void WriteDataSection(Page& page);
void WriteRequestSection(Page& page);
void WriteDeviceSection(Page& page);
void WriteScreenSection(Page& page);

// One screen with its legend (used by the screen section and by single-screen pages).
// `key` is the screen's position key ("c1s2": category 1, screen 2).
void WriteScreen(Page& page, const ScreenItem& screen, const CategoryItem& category, const std::string& key);

}  // namespace tessaly::preview

#endif  // TESSALY_SRC_PREVIEW_PAGE_HPP_
