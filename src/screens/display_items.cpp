#include "tessaly/screens/display_items.hpp"

#include <optional>
#include <string>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "screens/layout_xml.hpp"
#include "screens/screen_links.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/screens/display_references.hpp"
#include "tessaly/screens/range_items.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kDisplayLoad = "DisplayItem.loadXml";

// The placement a data display shows; error 91 when there is no reference or it no longer
// resolves (its request or its data is gone).
std::shared_ptr<DataPositionItem> ResolvedPosition(const std::shared_ptr<DisplayDataItem>& reference) {
  std::shared_ptr<DataPositionItem> position = reference ? reference->DataPosition() : nullptr;
  if (!position) RaisePlatform(errc::kObjectNotSet);
  return position;
}

// Logs `logText` to the event log of the display's target and throws error 1.
[[noreturn]] void Refuse(const TargetItem* target, const std::string& logText, const char* description) {
  LogError(target, logText);
  Raise(errc::kModel, kDisplayLoad, description);
}

}  // namespace

void DisplayItem::clear() {
  if (DisplayExtraItem_) {
    DisplayExtraItem_->clear();
    DisplayExtraItem_.reset();
  }
  if (DisplayDataItem_) {
    DisplayDataItem_->clear();
    DisplayDataItem_.reset();
  }
  if (RangeItems_) {
    RangeItems_->clear();
    RangeItems_.reset();
  }
  parent_.reset();
}

void DisplayItem::createXMLnode(xml::Out parNode) const {
  // A data display is an input field when its data is a parameter of its request, so the
  // element name follows the placement as it is now, not as it was read.
  const char* name = "Display";
  std::shared_ptr<DataPositionItem> position;
  if (TypeDisplay_ == kRequestDisplay) {
    if (!DisplayExtraItem_) return;
    if (DisplayExtraItem_->param()) name = "Input";
  } else if (TypeDisplay_ == kDataDisplay) {
    if (!DisplayDataItem_) return;
    position = ResolvedPosition(DisplayDataItem_);
    if (position->param()) name = "Input";
  }

  xml::Out element = xml::AppendElement(parNode, name);
  xml::SetAttr(element, "Width", CaptionWidth_);
  xml::SetAttr(element, "Color", DisplayColor_);
  if (TypeDisplay_ == kRequestDisplay) {
    xml::SetAttr(element, "RequestName", DisplayExtraItem_->requestName());
  } else if (TypeDisplay_ == kDataDisplay) {
    std::shared_ptr<RequestItem> request = position->parent();
    if (!request) RaisePlatform(errc::kObjectNotSet);
    xml::SetAttr(element, "DataName", position->dataName());
    xml::SetAttr(element, "RequestName", request->requestName());
  } else {
    xml::SetAttr(element, "DataName", ResolvedPosition(DisplayDataItem_)->dataName());
  }
  xml::AppendLf(element);
  AppendRectangle(element, DisplayLeft_, DisplayTop_, DisplayHeight_, DisplayWidth_);
  xml::AppendLf(element);
  xml::Out font = xml::AppendElement(element, "Font");
  xml::SetAttr(font, "Name", FontName_);
  xml::SetAttr(font, "Size", SignedNumberText(static_cast<double>(FontSize_)));
  xml::SetBoolAttr(font, "Bold", FontBold_);
  xml::SetBoolAttr(font, "Italic", FontItalic_);
  xml::SetAttr(font, "Color", FontColor_);

  if (RangeItems_) RangeItems_->createXMLnode(element);
}

void DisplayItem::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  Err().Clear();
  const bool input = xml::BaseName(parNode) == "Input";
  Trap([&] { xml::ReadInt(parNode, "Width", CaptionWidth_); });
  Trap([&] { xml::ReadInt(parNode, "Color", DisplayColor_); });
  if (pugi::xml_node rectangle = xml::Child(parNode, "Rectangle"))
    ReadRectangle(rectangle, DisplayLeft_, DisplayTop_, DisplayHeight_, DisplayWidth_);
  if (pugi::xml_node font = xml::Child(parNode, "Font")) {
    xml::ReadText(font, "Name", FontName_);
    Trap([&] {
      if (auto size = xml::Attr(font, "Size")) FontSize_ = RoundToInt32(FontSizeValue(*size));
    });
    Trap([&] { xml::ReadBool(font, "Bold", FontBold_); });
    Trap([&] { xml::ReadBool(font, "Italic", FontItalic_); });
    Trap([&] { xml::ReadInt(font, "Color", FontColor_); });
  }
  // Nothing read so far can make the display fail.
  Err().Clear();

  // A failed reference ends the reading with its error pending: no thresholds are read and
  // the display list drops the display.
  if (!Trap([&] { ReadReference(parNode, input); })) return;

  Err().Clear();
  if (!RangeItems_) RangeItems_ = std::make_shared<tessaly::RangeItems>();
  RangeItems_->loadXml(odoc, parNode, shared_from_this());
}

void DisplayItem::ReadReference(pugi::xml_node parNode, bool input) {
  std::shared_ptr<ScreenItem> screen = parent();
  std::shared_ptr<TargetItem> target = TargetOf(screen.get());
  // Views of the attributes' texts in the DOM, copied once, into the reference.
  const std::string_view requestName = xml::Attr(parNode, "RequestName").value_or(std::string_view());
  std::optional<std::string_view> dataAttr = xml::Attr(parNode, "DataName");

  if (!dataAttr) {
    TypeDisplay_ = kRequestDisplay;
    if (requestName.empty())
      Refuse(target.get(), "DisplayItem.loadXml : requestName missing", "requestName missing");
    if (!DisplayExtraItem_) DisplayExtraItem_ = std::make_shared<tessaly::DisplayExtraItem>();
    DisplayExtraItem_->set_parent(shared_from_this());
    DisplayExtraItem_->set_param(input);
    Err().Clear();
    DisplayExtraItem_->set_requestName(std::string(requestName));
    DisplayExtraItem_->set_request(RequestsOf(screen.get())->ItemName(requestName));
    if (!DisplayExtraItem_->request())
      Refuse(target.get(), "DisplayItem.loadXml : request missing (" + std::string(requestName) + ")", "request missing");
    return;
  }

  TypeDisplay_ = kDataDisplay;
  const std::string_view dataName = *dataAttr;
  if (requestName.empty() || dataName.empty())
    Refuse(target.get(), "DisplayItem.loadXml : dataName or requestName missing", "requestName/dataName missing");
  if (!DisplayDataItem_) DisplayDataItem_ = std::make_shared<tessaly::DisplayDataItem>();
  DisplayDataItem_->set_parent(shared_from_this());
  Err().Clear();
  DisplayDataItem_->set_dataName(std::string(dataName));
  DisplayDataItem_->set_requestName(std::string(requestName));
  DisplayDataItem_->set_DataPosition(RequestsOf(screen.get())->ItemDataPositionName(requestName, dataName));
  if (!DisplayDataItem_->DataPosition())
    Refuse(target.get(),
           "DisplayItem.loadXml : request/data missing (" + std::string(requestName) + "/" + std::string(dataName) + ")",
           "request/data missing");
}

std::shared_ptr<DisplayItem> DisplayItems::Add(std::string_view sKey) {
  return Append(std::make_shared<DisplayItem>(), sKey);
}

std::shared_ptr<DisplayItem> DisplayItems::AddData(const std::shared_ptr<DisplayItem>& vData, std::string_view sKey) {
  if (!vData) RaisePlatform(errc::kObjectNotSet);
  return Append(vData, sKey);
}

void DisplayItems::createXMLnode(xml::Out parNode) const {
  for (const auto& display : *this) {
    xml::AppendLf(parNode);
    display->createXMLnode(parNode);
  }
}

void DisplayItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<ScreenItem>& parent) {
  Err().Clear();
  // Display and Input elements together, in document order.
  for (pugi::xml_node element = parNode.first_child(); element; element = element.next_sibling()) {
    if (element.type() != pugi::node_element) continue;
    std::string_view name = element.name();
    if (name != "Display" && name != "Input") continue;
    auto item = std::make_shared<DisplayItem>();
    item->set_parent(parent);
    item->loadXml(odoc, element);
    if (Err().Number() == 0) {
      Trap([&] { AddData(item); });
    } else if (auto facade = DiagnosticsOf(TargetOf(parent.get()).get())) {
      facade->ReportDiagnostic(Diagnostic::Action::kDropped, element,
                               std::string(name) + " in screen " + ScreenPath(parent.get()), Err().Description());
    }
    Err().Clear();
  }
}

}  // namespace tessaly
