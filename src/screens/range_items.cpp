#include "tessaly/screens/range_items.hpp"

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "screens/screen_links.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/screens/display_items.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {

void RangeItem::ReportRepairedColor(pugi::xml_node parNode) const {
  std::shared_ptr<DisplayItem> display = parent();
  std::shared_ptr<ScreenItem> screen = display ? display->parent() : nullptr;
  if (auto facade = DiagnosticsOf(TargetOf(screen.get()).get()))
    facade->ReportDiagnostic(Diagnostic::Action::kRepaired, parNode, "Threshold in screen " + ScreenPath(screen.get()),
                             "Color '" + std::string(parNode.attribute("Color").value()) + "' unreadable, red used");
}

void RangeItem::set_Son(std::int32_t value) {
  Son_ = value;
  SoundName_ = IntText(value);
}

void RangeItem::set_SoundName(std::string value) {
  SoundName_ = std::move(value);
  // A name that is not a number (a sound file, a word) gives no tone number.
  try {
    Son_ = ToInt32(SoundName_);
  } catch (const Error&) {
    Son_ = 0;
  }
}

void RangeItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Value", SignedNumberText(Seuil_));
  xml::SetAttr(parNode, "Color", Couleur_);
  if (SonFlag_) {
    xml::AppendLf(parNode);
    xml::SetAttr(xml::AppendElement(parNode, "Sound"), "Name", SoundName_);
  }
}

void RangeItem::loadXml(pugi::xml_document&, pugi::xml_node parNode) {
  Err().Clear();
  // The threshold is read up to the first character that cannot continue a number: a comma
  // ends it ("12,5" is 12).
  if (auto value = xml::Attr(parNode, "Value")) Seuil_ = LeadingNumber(*value);
  if (!Trap([&] { Couleur_ = ToInt32(xml::Required(parNode, "Color")); })) {
    Couleur_ = kRed;
    if (xml::Attr(parNode, "Color")) ReportRepairedColor(parNode);
    Err().Clear();
  }
  if (auto sound = xml::Attr(xml::Child(parNode, "Sound"), "Name")) {
    SonFlag_ = true;
    set_SoundName(std::string(*sound));
  } else {
    SonFlag_ = false;
    Son_ = 0;
    SoundName_.clear();
  }
}

std::shared_ptr<RangeItem> RangeItems::Add(double Seuil, std::string_view sKey) {
  auto item = std::make_shared<RangeItem>();
  item->set_Seuil(Seuil);
  return Append(item, sKey);
}

std::shared_ptr<RangeItem> RangeItems::AddData(const std::shared_ptr<RangeItem>& vData, std::string_view sKey) {
  if (!vData) RaisePlatform(errc::kObjectNotSet);
  return Append(vData, sKey);
}

void RangeItems::createXMLnode(xml::Out parNode) const {
  for (const auto& range : *this) range->createXMLnode(xml::AppendElement(parNode, "Threshold"));
}

void RangeItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<DisplayItem>& parent) {
  Err().Clear();
  ReadChildren(*this, parNode, "Threshold", [&](pugi::xml_node element) {
    auto item = std::make_shared<RangeItem>();
    item->set_parent(parent);
    item->loadXml(odoc, element);
    if (Err().Number() == 0) Trap([&] { AddData(item); });
    Err().Clear();
  });
}

}  // namespace tessaly
