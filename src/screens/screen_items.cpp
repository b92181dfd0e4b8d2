#include "tessaly/screens/screen_items.hpp"

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "screens/screen_links.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/screens/button_items.hpp"
#include "tessaly/screens/category_items.hpp"
#include "tessaly/screens/display_items.hpp"
#include "tessaly/screens/label_items.hpp"
#include "tessaly/screens/scenario_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kScreenLoad = "ScreenItem.loadXml";

}  // namespace

void ScreenItem::clear() {
  parent_.reset();
  ButtonInit_.reset();
  if (ButtonItems_) {
    ButtonItems_->clear();
    ButtonItems_.reset();
  }
  if (LabelItems_) {
    LabelItems_->clear();
    LabelItems_.reset();
  }
  if (DisplayItems_) {
    DisplayItems_->clear();
    DisplayItems_.reset();
  }
}

void ScreenItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Name", screenName_);
  xml::SetAttr(parNode, "Color", ScreenColor_);
  xml::SetAttr(parNode, "WindowState", WindowState_);
  xml::SetAttr(parNode, "Width", ScreenWidth_);
  xml::SetAttr(parNode, "Height", ScreenHeight_);
  xml::AppendLf(parNode);
  if (LabelItems_) {
    LabelItems_->createXMLnode(parNode);
    xml::AppendLf(parNode);
  }
  if (ButtonInit_) {
    // The init button lives in the screen's own element: its message, then its Send steps,
    // with no line feed after them.
    if (!ButtonInit_->Message().empty())
      xml::AppendText(xml::AppendElement(parNode, "Message"), ButtonInit_->Message());
    ButtonInit_->ScenarioItems()->createXMLnode(parNode);
  }
  if (ButtonItems_) {
    ButtonItems_->createXMLnode(parNode);
    xml::AppendLf(parNode);
  }
  if (DisplayItems_) {
    DisplayItems_->createXMLnode(parNode);
    xml::AppendLf(parNode);
  }
}

void ScreenItem::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  Err().Clear();
  if (!xml::ReadText(parNode, "Name", screenName_)) {
    // Reported and withdrawn at once: the screen is kept with its defaults and no contents.
    Err().Raise(errc::kModel, kScreenLoad, "Name undefined, bad screen");
    Err().Clear();
    if (auto facade = DiagnosticsOf(TargetOf(this).get())) {
      std::shared_ptr<CategoryItem> category = parent();
      facade->ReportDiagnostic(Diagnostic::Action::kRepaired, parNode,
                               "Screen without Name in category " + (category ? category->categoryName() : std::string()),
                               "Name undefined, bad screen");
    }
    return;
  }
  Trap([&] { xml::ReadInt(parNode, "WindowState", WindowState_); });
  Trap([&] { xml::ReadInt(parNode, "Width", ScreenWidth_); });
  Trap([&] { xml::ReadInt(parNode, "Height", ScreenHeight_); });
  Trap([&] { xml::ReadInt(parNode, "Color", ScreenColor_); });

  std::shared_ptr<ScreenItem> self = shared_from_this();
  ButtonInit_ = std::make_shared<ButtonItem>();
  ButtonInit_->set_InitButton(true);
  ButtonInit_->set_parent(self);
  ButtonItems_ = std::make_shared<tessaly::ButtonItems>();
  ButtonItems_->AddData(ButtonInit_);

  // The init button's message is written as the text of a Message element but never read back:
  // after a load the init button's Message is always empty.

  auto initScenario = std::make_shared<tessaly::ScenarioItems>();
  ButtonInit_->set_ScenarioItems(initScenario);
  initScenario->loadXml(odoc, parNode, ButtonInit_);

  LabelItems_ = std::make_shared<tessaly::LabelItems>();
  LabelItems_->loadXml(odoc, parNode, self);

  ButtonItems_->loadXml(odoc, parNode, self);

  // Displays come last: they resolve request and data names against the target.
  DisplayItems_ = std::make_shared<tessaly::DisplayItems>();
  DisplayItems_->loadXml(odoc, parNode, self);
}

std::shared_ptr<ScreenItem> ScreenItems::Add(std::string screenName) {
  auto item = std::make_shared<ScreenItem>();
  item->set_screenName(std::move(screenName));
  return AddData(item);
}

std::shared_ptr<ScreenItem> ScreenItems::AddData(const std::shared_ptr<ScreenItem>& vData) {
  if (!vData) RaisePlatform(errc::kObjectNotSet);
  return Append(vData, "k" + vData->screenName());
}

std::shared_ptr<ScreenItem> ScreenItems::ItemName(std::string_view name) const {
  return FindFirst([&](const ScreenItem& s) { return s.screenName() == name; });
}

void ScreenItems::Delete(const std::shared_ptr<ScreenItem>& item) {
  if (!item) RaisePlatform(errc::kObjectNotSet);
  for (std::int32_t position = 1; position <= Count(); ++position) {
    if (inner_.Item(position)->screenName() == item->screenName()) {
      inner_.Remove(position);
      return;
    }
  }
}

void ScreenItems::createXMLnode(xml::Out parNode) const {
  for (const auto& screen : *this) {
    xml::AppendLf(parNode);
    screen->createXMLnode(xml::AppendElement(parNode, "Screen"));
  }
}

void ScreenItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<CategoryItem>& parent) {
  Err().Clear();
  ReadChildren(*this, parNode, "Screen", [&](pugi::xml_node element) {
    auto item = std::make_shared<ScreenItem>();
    item->set_parent(parent);
    item->loadXml(odoc, element);
    if (Err().Number() == 0 && Trap([&] { AddData(item); })) return;
    if (auto facade = DiagnosticsOf(TargetOf(item.get()).get()))
      facade->ReportDiagnostic(Diagnostic::Action::kDropped, element, "Screen " + ScreenPath(item.get()),
                               Err().Description());
  });
}

}  // namespace tessaly
