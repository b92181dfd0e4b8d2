#include "tessaly/screens/button_items.hpp"

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "screens/layout_xml.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/screens/scenario_items.hpp"
#include "tessaly/screens/screen_items.hpp"

namespace tessaly {

const std::shared_ptr<ScenarioItems>& ButtonItem::ScenarioItems() {
  if (!ScenarioItems_) ScenarioItems_ = std::make_shared<tessaly::ScenarioItems>();
  return ScenarioItems_;
}

void ButtonItem::clear() {
  parent_.reset();
  if (ScenarioItems_) ScenarioItems_->clear();
  ScenarioItems_.reset();
}

void ButtonItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Text", caption_);
  if (InitButton_) xml::SetAttr(parNode, "InitButton", std::string_view("1"));
  xml::AppendLf(parNode);
  AppendRectangle(parNode, ButtonLeft_, ButtonTop_, ButtonHeight_, ButtonWidth_);
  xml::AppendLf(parNode);
  xml::Out font = xml::AppendElement(parNode, "Font");
  xml::SetAttr(font, "Name", FontName_);
  xml::SetAttr(font, "Size", SignedNumberText(FontSize_));
  xml::SetBoolAttr(font, "Bold", FontBold_);
  xml::SetBoolAttr(font, "Italic", FontItalic_);
  xml::AppendLf(parNode);
  xml::SetAttr(xml::AppendElement(parNode, "Message"), "Text", Message_);
  xml::AppendLf(parNode);
  if (ScenarioItems_) {
    ScenarioItems_->createXMLnode(parNode);
    xml::AppendLf(parNode);
  }
}

void ButtonItem::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  Err().Clear();
  xml::ReadText(parNode, "Text", caption_);
  Trap([&] { xml::ReadBool(parNode, "InitButton", InitButton_); });
  if (InitButton_) {
    // Takes over from the init button the screen made, which stays first in the button list.
    Trap([&] {
      std::shared_ptr<ScreenItem> screen = parent();
      if (!screen) RaisePlatform(errc::kObjectNotSet);
      screen->set_ButtonInit(shared_from_this());
    });
  }
  if (pugi::xml_node rectangle = xml::Child(parNode, "Rectangle"))
    ReadRectangle(rectangle, ButtonLeft_, ButtonTop_, ButtonHeight_, ButtonWidth_);
  if (pugi::xml_node font = xml::Child(parNode, "Font")) {
    xml::ReadText(font, "Name", FontName_);
    Trap([&] {
      if (auto size = xml::Attr(font, "Size")) FontSize_ = FontSizeSingle(*size);
    });
    Trap([&] { xml::ReadBool(font, "Bold", FontBold_); });
    Trap([&] { xml::ReadBool(font, "Italic", FontItalic_); });
  }
  if (pugi::xml_node message = xml::Child(parNode, "Message")) xml::ReadText(message, "Text", Message_);
  if (!ScenarioItems_) ScenarioItems_ = std::make_shared<tessaly::ScenarioItems>();
  ScenarioItems_->loadXml(odoc, parNode, shared_from_this());
}

std::shared_ptr<ButtonItem> ButtonItems::Add(std::string caption, std::string_view sKey) {
  auto item = std::make_shared<ButtonItem>();
  item->set_caption(std::move(caption));
  return Append(item, sKey);
}

std::shared_ptr<ButtonItem> ButtonItems::AddData(const std::shared_ptr<ButtonItem>& vData, std::string_view sKey) {
  if (!vData) RaisePlatform(errc::kObjectNotSet);
  return Append(vData, sKey);
}

void ButtonItems::createXMLnode(xml::Out parNode) const {
  // Init buttons are written by their screen, in the screen's own element.
  for (const auto& button : *this) {
    if (button->InitButton()) continue;
    xml::AppendLf(parNode);
    button->createXMLnode(xml::AppendElement(parNode, "Button"));
  }
}

void ButtonItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<ScreenItem>& parent) {
  Err().Clear();
  ReadChildren(*this, parNode, "Button", [&](pugi::xml_node element) {
    auto item = std::make_shared<ButtonItem>();
    item->set_parent(parent);
    item->loadXml(odoc, element);
    // Only the error number -1 keeps a button out: in practice every button is kept.
    if (Err().Number() != -1) Trap([&] { AddData(item); });
  });
}

}  // namespace tessaly
