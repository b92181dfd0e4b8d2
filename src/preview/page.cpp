#include "preview/page.hpp"

#include "preview/colour.hpp"
#include "tessaly/common/convert.hpp"

namespace tessaly::preview {

Page::Page(const TessalyLibXml& lib, const std::shared_ptr<TargetItem>& target, const PreviewOptions& options)
    : lib_(lib), target_(target), options_(options) {}

std::shared_ptr<DataItem> Page::FindData(std::string_view name) const {
  const auto& datas = target_->datas();
  return datas ? datas->ItemName(name) : nullptr;
}

std::shared_ptr<RequestItem> Page::FindRequest(std::string_view name) const {
  const auto& requests = target_->Requests();
  return requests ? requests->ItemName(name) : nullptr;
}

const std::string& Page::Anchor(std::unordered_map<const void*, std::string>& map, const void* item,
                                std::string_view prefix, std::string_view name) {
  auto found = map.find(item);
  if (found != map.end()) return found->second;
  return map.emplace(item, ids_.Unique(AnchorId(prefix, name))).first->second;
}

const std::string& Page::DataAnchor(const DataItem& data) {
  return Anchor(dataAnchors_, &data, "data", data.dataName());
}

const std::string& Page::RequestAnchor(const RequestItem& request) {
  return Anchor(requestAnchors_, &request, "request", request.requestName());
}

const std::string& Page::DeviceAnchor(const OrganeItem& device) {
  return Anchor(deviceAnchors_, &device, "device", device.organeName());
}

void Page::DataLink(std::string_view name) {
  if (auto data = FindData(name); data && !links_) {
    Text(name);
  } else if (data) {
    out_ += "<a class=\"data-link\"";
    Attr("href", "#" + DataAnchor(*data));
    out_ += '>';
    Text(name);
    out_ += "</a>";
  } else {
    out_ += "<span class=\"missing\" title=\"no data item of this name\">";
    Text(name.empty() ? std::string_view("(no name)") : name);
    out_ += "</span>";
  }
}

void Page::RequestLink(std::string_view name) {
  if (auto request = FindRequest(name); request && !links_) {
    Text(name);
  } else if (request) {
    out_ += "<a class=\"request-link\"";
    Attr("href", "#" + RequestAnchor(*request));
    out_ += '>';
    Text(name);
    out_ += "</a>";
  } else {
    out_ += "<span class=\"missing\" title=\"no request of this name\">";
    Text(name.empty() ? std::string_view("(no name)") : name);
    out_ += "</span>";
  }
}

void Page::Swatch(std::int32_t packed, bool full) {
  out_ += "<span class=\"swatch\"";
  Attr("style", "background:" + CssColour(packed));
  Attr("title", ColourLabel(packed));
  out_ += "></span>";
  Text(full ? ColourLabel(packed) : CssColour(packed));
}

void Page::OpenDetails(std::string_view id, std::string_view cssClass, std::string_view title, std::size_t count,
                       bool showCount, bool folded) {
  out_ += "<details";
  if (!id.empty()) Attr("id", id);
  if (!cssClass.empty()) Attr("class", cssClass);
  if (count <= kOpenLimit && !folded) out_ += " open";
  out_ += "><summary>";
  Text(title);
  if (showCount) {
    out_ += " <span class=\"count\">(";
    out_ += IntText(static_cast<std::int64_t>(count));
    out_ += ")</span>";
  }
  out_ += "</summary>\n";
}

DisplayView ViewOf(const Page& page, const DisplayItem& display) {
  DisplayView view;
  if (display.TypeDisplay() == kRequestDisplay) {
    view.byRequest = true;
    if (const auto& extra = display.DisplayExtraItem()) {
      view.requestName = extra->requestName();
      view.input = extra->param();
    }
    return view;
  }
  if (const auto& ref = display.DisplayDataItem()) {
    view.dataName = ref->dataName();
    view.requestName = ref->requestName();
    if (auto request = page.FindRequest(view.requestName); request && request->DataPositions())
      if (auto position = request->DataPositions()->ItemName(view.dataName)) view.input = position->param();
  }
  view.data = page.FindData(view.dataName);
  return view;
}

}  // namespace tessaly::preview
