#include "tessaly/screens/scenario_items.hpp"

#include <algorithm>
#include <vector>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "screens/screen_links.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/screens/button_items.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kStepLoad = "ScenarioItem.loadXml";

// The screen a step's button sits on, or null.
std::shared_ptr<ScreenItem> ScreenOf(const ScenarioItem& step) {
  std::shared_ptr<ButtonItem> button = step.parent();
  return button ? button->parent() : nullptr;
}

}  // namespace

std::shared_ptr<RequestItem> ScenarioItem::request() const {
  std::shared_ptr<ButtonItem> button = parent();
  if (!button) RaisePlatform(errc::kObjectNotSet);
  return RequestsOf(button->parent().get())->ItemName(requestName_);
}

void ScenarioItem::set_request(const std::shared_ptr<RequestItem>& value) {
  if (value) requestName_ = value->requestName();
}

void ScenarioItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Delay", delay_);
  xml::SetAttr(parNode, "RequestName", requestName_);
}

void ScenarioItem::loadXml(pugi::xml_document&, pugi::xml_node parNode) {
  Err().Clear();
  requestName_.clear();
  xml::ReadText(parNode, "RequestName", requestName_);
  Trap([&] { xml::ReadInt(parNode, "Delay", delay_); });
  Err().Clear();
  // A step that cannot name an existing request is logged and left with its error pending.
  Trap([&] {
    const TargetItem* target = TargetOf(ScreenOf(*this).get()).get();
    if (requestName_.empty()) {
      LogError(target, "ScenarioItem.loadXml : requestName missing ");
      Raise(errc::kModel, kStepLoad, "requestName missing");
    }
    if (!request()) {
      LogError(target, "ScenarioItem.loadXml : request (" + requestName_ + ") missing ");
      Raise(errc::kModel, kStepLoad, "request missing");
    }
  });
}

std::shared_ptr<ScenarioItem> ScenarioItems::Add(std::string requestName, std::int32_t delay) {
  auto item = std::make_shared<ScenarioItem>();
  item->set_requestName(std::move(requestName));
  item->set_delay(delay);
  return AddData(item);
}

std::shared_ptr<ScenarioItem> ScenarioItems::AddData(const std::shared_ptr<ScenarioItem>& vData) {
  if (!vData) RaisePlatform(errc::kObjectNotSet);
  std::int32_t largest = 0;
  for (const auto& step : *this) largest = std::max(largest, step->Index());
  vData->set_Index(largest + 1);
  return Append(vData);
}

void ScenarioItems::Delete(const std::shared_ptr<ScenarioItem>& item) {
  if (std::int32_t position = inner_.PositionOf(item.get()); position != 0) inner_.Remove(position);
  Renumber();
}

void ScenarioItems::sort() {
  // Repeated selection of the smallest number; among equal numbers the earliest position wins.
  std::vector<Ptr> ordered;
  ordered.reserve(static_cast<std::size_t>(Count()));
  while (Count() != 0) {
    std::int32_t smallest = 1;
    for (std::int32_t position = 2; position <= Count(); ++position)
      if (inner_.Item(position)->Index() < inner_.Item(smallest)->Index()) smallest = position;
    Ptr step = inner_.Item(smallest);
    step->set_Index(static_cast<std::int32_t>(ordered.size()) + 1);
    ordered.push_back(step);
    inner_.Remove(smallest);
  }
  for (const Ptr& step : ordered) inner_.Append(step);
}

void ScenarioItems::up(const std::shared_ptr<ScenarioItem>& item) {
  if (Count() < 2 || inner_.Item(1) == item) return;
  for (std::int32_t position = 2; position <= Count(); ++position) {
    if (inner_.Item(position) == item) {
      Ptr step = inner_.Item(position);
      inner_.Remove(position);
      inner_.InsertBefore(position - 1, step);
      break;
    }
  }
  Renumber();
}

void ScenarioItems::down(const std::shared_ptr<ScenarioItem>& item) {
  if (Count() < 2 || inner_.Item(Count()) == item) return;
  for (std::int32_t position = Count() - 1; position >= 1; --position) {
    if (inner_.Item(position) == item) {
      Ptr step = inner_.Item(position);
      inner_.Remove(position);
      // The successor now stands at `position`; the step goes right after it.
      if (position + 1 > Count()) {
        inner_.Append(step);
      } else {
        inner_.InsertBefore(position + 1, step);
      }
      break;
    }
  }
  Renumber();
}

void ScenarioItems::Renumber() {
  for (std::int32_t position = 1; position <= Count(); ++position) inner_.Item(position)->set_Index(position);
}

void ScenarioItems::createXMLnode(xml::Out parNode) const {
  for (const auto& step : *this) {
    xml::Out send = xml::AppendElement(parNode, "Send");
    if (step->request()) step->createXMLnode(send);
  }
}

void ScenarioItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<ButtonItem>& parent) {
  Err().Clear();
  // Each step kept is numbered as AddData numbers it, after the largest number held; the
  // largest number is carried along instead of searched again for every step, so that a long
  // scenario reads in linear time.
  std::int32_t largest = 0;
  for (const auto& step : *this) largest = std::max(largest, step->Index());
  ReadChildren(*this, parNode, "Send", [&](pugi::xml_node element) {
    auto item = std::make_shared<ScenarioItem>();
    item->set_parent(parent);
    item->loadXml(odoc, element);
    if (Err().Number() == 0) {
      item->set_Index(++largest);
      Append(item);
      return;
    }
    std::shared_ptr<ScreenItem> screen = parent ? parent->parent() : nullptr;
    if (auto facade = DiagnosticsOf(TargetOf(screen.get()).get())) {
      std::string owner = parent && parent->InitButton() ? "the init button" : "button " + (parent ? parent->caption() : "");
      facade->ReportDiagnostic(Diagnostic::Action::kDropped, element,
                               "Send of " + owner + " in screen " + ScreenPath(screen.get()), Err().Description());
    }
  });
}

}  // namespace tessaly
