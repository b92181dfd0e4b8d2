// Scenarios: the ordered steps a button sends, each a request (by name) followed by a delay.
// ScenarioItems keeps the step numbers (Index) 1-based and consecutive through AddData, Delete,
// sort, up and down; the document order of the Send elements is the scenario's order.
//
// Thread safety: none; a scenario belongs to one document, used from one thread at a time.
#ifndef TESSALY_SCREENS_SCENARIO_ITEMS_HPP_
#define TESSALY_SCREENS_SCENARIO_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class ButtonItem;
class RequestItem;

class ScenarioItem {
 public:
  const std::string& requestName() const { return requestName_; }
  void set_requestName(std::string value) { requestName_ = std::move(value); }
  // Delay after the request (written as Delay).
  std::int32_t delay() const { return delay_; }
  void set_delay(std::int32_t value) { delay_ = value; }
  // The step's number within its scenario, maintained by ScenarioItems.
  std::int32_t Index() const { return Index_; }
  void set_Index(std::int32_t value) { Index_ = value; }
  // The target's request of that name (letter case ignored), or null when there is none.
  // Throws error 91 when the step is not attached to a target through its button, screen and
  // category.
  std::shared_ptr<RequestItem> request() const;
  // Copies the request's name; null changes nothing.
  void set_request(const std::shared_ptr<RequestItem>& value);
  // The owning button, or null.
  std::shared_ptr<ButtonItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<ButtonItem>& value) { parent_ = value; }

  // Releases the parent.
  void clear() { parent_.reset(); }
  // Fills the Send element: Delay, then RequestName.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads a Send element. A missing or unknown request name writes an entry to the event log
  // and leaves error 1 pending (source "ScenarioItem.loadXml"), so that the scenario drops the
  // step.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  std::string requestName_;
  std::int32_t delay_ = 0;
  std::int32_t Index_ = 0;
  std::weak_ptr<ButtonItem> parent_;
};

class ScenarioItems : public Collection<ScenarioItem> {
 public:
  // Creates a step with those values and appends it with AddData.
  std::shared_ptr<ScenarioItem> Add(std::string requestName, std::int32_t delay);
  // Numbers the step one past the largest Index held (1 in an empty list) and appends it.
  std::shared_ptr<ScenarioItem> AddData(const std::shared_ptr<ScenarioItem>& vData);
  // Removes the very same object (without clearing it), then renumbers every step by its
  // position, also when the item was not held.
  void Delete(const std::shared_ptr<ScenarioItem>& item);
  // Orders the steps by Index (the earlier position first among equal numbers), numbering them
  // 1..Count.
  void sort();
  // Swaps the step with its predecessor, then renumbers. Does nothing at all (no renumbering)
  // with fewer than two steps or when the step is first; a step not held only renumbers.
  void up(const std::shared_ptr<ScenarioItem>& item);
  // Swaps the step with its successor, then renumbers. Does nothing at all with fewer than two
  // steps or when the step is last; a step not held only renumbers. The search runs from the
  // end, so of an object held twice the later occurrence moves.
  void down(const std::shared_ptr<ScenarioItem>& item);
  // Clears and removes every step, without renumbering.
  void clear() { ClearItems(); }

  // For each step: a Send element; it is filled only when the step's request still exists, so
  // a step whose request is gone is written as an empty Send. No line feeds. Throws error 91
  // when a step is not attached to a target.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Send child of `parNode` in document order; the steps kept are numbered 1, 2, 3
  // ... When the last Send is dropped, its error stays pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<ButtonItem>& parent);

 private:
  void Renumber();
};

}  // namespace tessaly

#endif  // TESSALY_SCREENS_SCENARIO_ITEMS_HPP_
