// DeviceDataItem and DeviceDataItems: the data items of the ECU that belong to one device, and
// for each whether it is the device's failure flag. A link holds its data item by name only; the
// item itself lives in the ECU's data and is looked up by that name on each access.
//
// DeviceDataItems holds the links of one device, without keys, in insertion order, with at most
// one link per data name (names compared exactly, letter case included).
//
// Thread safety: none; a device belongs to one document, used from one thread at a time.
#ifndef TESSALY_DEVICES_DEVICE_DATA_ITEMS_HPP_
#define TESSALY_DEVICES_DEVICE_DATA_ITEMS_HPP_

#include <pugixml.hpp>

#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class DataItem;
class OrganeItem;

class DeviceDataItem {
 public:
  DeviceDataItem() = default;

  // Drops the parent.
  void clear() { parent_.reset(); }

  // The owning device, or null.
  std::shared_ptr<OrganeItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<OrganeItem>& value) { parent_ = value; }

  // The data item named dataName in the data of the device's ECU, or null when the ECU has no
  // data of that name. Error 91 when the link has no device or the device has no ECU.
  std::shared_ptr<DataItem> data() const;
  // Takes the name of `value`; null changes nothing.
  void set_data(const std::shared_ptr<DataItem>& value);

  // The link marks the device's failure flag (XML FailureFlag "1" / "0").
  bool FlagPanne() const noexcept { return FlagPanne_; }
  void set_FlagPanne(bool value) noexcept { FlagPanne_ = value; }

  const std::string& dataName() const noexcept { return dataName_; }
  void set_dataName(std::string value) { dataName_ = std::move(value); }

  // Sets Name and FailureFlag on the given DeviceData element.
  void createXMLnode(pugi::xml_document&, pugi::xml_node element) const { createXMLnode(xml::Out(element)); }
  void createXMLnode(xml::Out element) const;
  // Reads the given DeviceData element. A missing Name leaves error 1 pending (with the text of
  // the failure) and reads nothing more; a FailureFlag that is not a boolean leaves the
  // conversion's error pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node element);

 private:
  std::string dataName_;
  bool FlagPanne_ = false;
  std::weak_ptr<OrganeItem> parent_;
};

class DeviceDataItems : public Collection<DeviceDataItem> {
 public:
  // Calls clear on every link, then removes them all.
  void clear() { ClearItems(); }
  // Clears and removes the very same link; a link not held (even one of the same name) is
  // ignored.
  void Delete(const std::shared_ptr<DeviceDataItem>& item) { DeleteItem(item.get()); }

  // Appends `item` without a key and returns it. Error 1 "Duplicate Data, a data can be used
  // only one time in one device" when a link of the same name is held; nothing is added then.
  std::shared_ptr<DeviceDataItem> AddData(const std::shared_ptr<DeviceDataItem>& item);
  // A new link with this name (its parent is not set), added by AddData.
  std::shared_ptr<DeviceDataItem> Add(std::string dataName);

  // The first link whose dataName equals `dataName` exactly, or null.
  std::shared_ptr<DeviceDataItem> ItemName(std::string_view dataName) const;

  // Appends one DeviceData element per link to `parNode`, with no text between them.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the DeviceData children of `parNode` in document order, each with `parent` as its
  // device. Links without a name and repeats of a name are dropped silently: no error is left
  // pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<OrganeItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_DEVICES_DEVICE_DATA_ITEMS_HPP_
