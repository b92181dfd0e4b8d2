#include "tessaly/screens/label_items.hpp"

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "screens/layout_xml.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/screens/screen_items.hpp"

namespace tessaly {

void LabelItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Text", LabelText_);
  xml::SetAttr(parNode, "Color", LabelColor_);
  xml::SetAttr(parNode, "Alignment", Alignment_);
  xml::AppendLf(parNode);
  AppendRectangle(parNode, LabelLeft_, LabelTop_, LabelHeight_, LabelWidth_);
  xml::AppendLf(parNode);
  xml::Out font = xml::AppendElement(parNode, "Font");
  xml::SetAttr(font, "Name", FontName_);
  xml::SetAttr(font, "Size", SignedNumberText(FontSize_));
  xml::SetBoolAttr(font, "Bold", FontBold_);
  xml::SetBoolAttr(font, "Italic", FontItalic_);
  xml::SetAttr(font, "Color", FontColor_);
}

void LabelItem::loadXml(pugi::xml_document&, pugi::xml_node parNode) {
  Err().Clear();
  xml::ReadText(parNode, "Text", LabelText_);
  Trap([&] { xml::ReadInt(parNode, "Color", LabelColor_); });
  Trap([&] { xml::ReadInt(parNode, "Alignment", Alignment_); });
  if (pugi::xml_node rectangle = xml::Child(parNode, "Rectangle"))
    ReadRectangle(rectangle, LabelLeft_, LabelTop_, LabelHeight_, LabelWidth_);
  if (pugi::xml_node font = xml::Child(parNode, "Font")) {
    xml::ReadText(font, "Name", FontName_);
    Trap([&] {
      if (auto size = xml::Attr(font, "Size")) FontSize_ = FontSizeSingle(*size);
    });
    Trap([&] { xml::ReadBool(font, "Bold", FontBold_); });
    Trap([&] { xml::ReadBool(font, "Italic", FontItalic_); });
    Trap([&] { xml::ReadInt(font, "Color", FontColor_); });
  }
}

std::shared_ptr<LabelItem> LabelItems::Add(std::int32_t LabelId, std::string_view sKey) {
  auto item = std::make_shared<LabelItem>();
  item->set_LabelId(LabelId);
  return Append(item, sKey);
}

std::shared_ptr<LabelItem> LabelItems::AddData(const std::shared_ptr<LabelItem>& vData, std::string_view sKey) {
  if (!vData) RaisePlatform(errc::kObjectNotSet);
  return Append(vData, sKey);
}

void LabelItems::createXMLnode(xml::Out parNode) const {
  for (const auto& label : *this) {
    xml::AppendLf(parNode);
    label->createXMLnode(xml::AppendElement(parNode, "Label"));
  }
}

void LabelItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<ScreenItem>& parent) {
  Err().Clear();
  ReadChildren(*this, parNode, "Label", [&](pugi::xml_node element) {
    auto item = std::make_shared<LabelItem>();
    item->set_parent(parent);
    item->loadXml(odoc, element);
    // Only the error number -1 keeps a label out: in practice every label is kept.
    if (Err().Number() != -1) Trap([&] { AddData(item); });
  });
}

}  // namespace tessaly
