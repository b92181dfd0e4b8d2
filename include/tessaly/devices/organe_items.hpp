// OrganeItem and OrganeItems: the devices of an ECU (sensors, actuators and other components) as
// a diagnostic tool presents them: a type from the global device types, DTC and OBD codes, a
// mnemonic, the request that reads the device's freeze frame, the data that belong to the device
// (DeviceDatas) and its failure tests (Tests).
//
// OrganeItems is the ECU's collection of devices, keyed by "k" followed by the device name, so
// look-ups by name ignore letter case.
//
// Thread safety: none; a device belongs to one document, used from one thread at a time.
#ifndef TESSALY_DEVICES_ORGANE_ITEMS_HPP_
#define TESSALY_DEVICES_ORGANE_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"
#include "tessaly/devices/device_data_items.hpp"
#include "tessaly/devices/test_items.hpp"

namespace tessaly {

class DataPositionItem;
class RequestItem;
class TargetItem;

class OrganeItem : public std::enable_shared_from_this<OrganeItem> {
 public:
  OrganeItem() = default;

  // Drops the request, clears and drops the device data and the tests, and drops the parent.
  void clear();

  // The owning ECU, or null.
  std::shared_ptr<TargetItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<TargetItem>& value) { parent_ = value; }

  // The freeze-frame request. Setting a request also sets requestName to its name; setting
  // null sets requestName to "".
  const std::shared_ptr<RequestItem>& request() const noexcept { return request_; }
  void set_request(const std::shared_ptr<RequestItem>& value);
  // The name of the freeze-frame request (XML FreezeFrame). Setting it stores the text only.
  const std::string& requestName() const noexcept { return requestName_; }
  void set_requestName(std::string value) { requestName_ = std::move(value); }

  // The failure tests. The first read of a device without tests creates an empty collection,
  // so this never yields null.
  const std::shared_ptr<TestItems>& Tests() const;
  // Whether the device holds a tests collection, without creating one (for readers that must
  // leave the model as it is).
  bool HasTests() const noexcept { return Tests_ != nullptr; }
  void set_Tests(std::shared_ptr<TestItems> value) { Tests_ = std::move(value); }
  // The device's data links; null until loaded or assigned.
  const std::shared_ptr<DeviceDataItems>& DeviceDatas() const noexcept { return DeviceDatas_; }
  void set_DeviceDatas(std::shared_ptr<DeviceDataItems> value) { DeviceDatas_ = std::move(value); }

  std::int32_t OrganeOBD() const noexcept { return OrganeOBD_; }
  void set_OrganeOBD(std::int32_t value) noexcept { OrganeOBD_ = value; }
  std::int32_t OrganeDTC() const noexcept { return OrganeDTC_; }
  void set_OrganeDTC(std::int32_t value) noexcept { OrganeDTC_ = value; }

  // The device type, kept in step with its name through the device types of the ECU's facade:
  // setting the id takes the label of the type of that id, setting the name takes the id of the
  // type of that label. No such type (or no facade) leaves the other value as it was.
  std::int32_t OrganeTypeId() const noexcept { return OrganeTypeId_; }
  void set_OrganeTypeId(std::int32_t value);
  const std::string& OrganeTypeName() const noexcept { return OrganeTypeName_; }
  void set_OrganeTypeName(std::string value);

  const std::string& Mnemonique() const noexcept { return Mnemonique_; }
  void set_Mnemonique(std::string value) { Mnemonique_ = std::move(value); }
  // The device name, unique within the ECU (use OrganeItems::rename to rename a held device).
  const std::string& organeName() const noexcept { return organeName_; }
  void set_organeName(std::string value) { organeName_ = std::move(value); }

  // Gives the link to `oldName` in DeviceDatas, if any, the name `newName`, and renames the
  // flag of the test found by GetTestUsingData(oldName), if any.
  void RenameData(const std::string& oldName, const std::string& newName);
  // The link to `dataName` (exact name), or null; null when the device has no DeviceDatas.
  std::shared_ptr<DeviceDataItem> GetDeviceDataUsingData(std::string_view dataName) const;
  // The test whose StoredFlag list names `dataName`, or null; null when the device has no tests
  // collection yet (none is created).
  std::shared_ptr<TestItem> GetTestUsingData(std::string_view dataName) const;
  // Forgets the data of `dataPosition`: deletes the device's link to it when there is one,
  // else removes the flag of the test that uses it, if any. Error 91 for a null position.
  void DeleteDataPosition(const std::shared_ptr<DataPositionItem>& dataPosition);

  // The placement of `dataName` (exact name) in the ECU's request named requestName, or null
  // when the device has no ECU, the ECU has no such request, or the request does not place that
  // data. Test flags are resolved through it.
  std::shared_ptr<DataPositionItem> FreezeFramePosition(std::string_view dataName) const;

  // Fills the given Device element; values at their defaults are left out.
  void createXMLnode(pugi::xml_document&, pugi::xml_node element) const { createXMLnode(xml::Out(element)); }
  void createXMLnode(xml::Out element) const;
  // Reads the given Device element. A missing Name leaves error 100 pending and reads nothing
  // more. Other errors of the device's own values are left pending in preference to those of
  // its data links and tests.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node element);

 private:
  // The collection looks at the tests without creating them.
  friend class OrganeItems;

  std::string organeName_;
  std::string Mnemonique_;
  std::int32_t OrganeTypeId_ = 1;
  std::string OrganeTypeName_ = "Entr\xC3\xA9" "e";
  std::int32_t OrganeDTC_ = 0;
  std::int32_t OrganeOBD_ = 0;
  std::shared_ptr<DeviceDataItems> DeviceDatas_;
  mutable std::shared_ptr<TestItems> Tests_;
  std::shared_ptr<RequestItem> request_;
  std::string requestName_;
  std::weak_ptr<TargetItem> parent_;
};

class OrganeItems : public Collection<OrganeItem> {
 public:
  // Clears every device and empties the collection.
  void clear() { ClearItems(); }
  // Clears and removes the very same device; a device not held is ignored.
  void Delete(const std::shared_ptr<OrganeItem>& item) { DeleteItem(item.get()); }

  // Adds `item` under "k" + its name and returns it; a name already held (in any letter case)
  // is error 457.
  std::shared_ptr<OrganeItem> AddData(const std::shared_ptr<OrganeItem>& item);
  // A new device with these values (no parent), added by AddData.
  std::shared_ptr<OrganeItem> Add(std::string organeName, std::string Mnemonique, std::int32_t OrganeDTC,
                                  std::int32_t OrganeOBD);
  // Renames `item` and moves it to the end of the collection under its new key. Refuses a name
  // held by another device (error 1, "Duplicate device (" + newName + ")", nothing changed);
  // its own exact name does nothing.
  void rename(const std::shared_ptr<OrganeItem>& item, const std::string& newName);

  // The device keyed "k" + name (letter case ignored), or null.
  std::shared_ptr<OrganeItem> ItemName(std::string_view name) const;

  // Applies DeleteDataPosition to every device in order.
  void DeleteDataPosition(const std::shared_ptr<DataPositionItem>& dataPosition);
  // The first test, over the devices in order, that has the non-zero OBD code `obd`; null when
  // none has it.
  std::shared_ptr<TestItem> GetDevicesTestWithObd(std::int32_t obd) const;

  // Appends, for each device, a Device element and a line feed to `parNode`.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every child element of `parNode` whose local name is Device, whatever its prefix, each
  // with `parent` as its ECU, and adds it with AddData. No error drops a device except a name
  // already held; the last error stays pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<TargetItem>& parent);

 private:
  // While loadXml runs: the first test, in device order, of each non-zero OBD code of the
  // devices held, so that each test read checks its code in constant time (a load only appends
  // devices, so the first holder of a code never changes). Null otherwise.
  std::unordered_map<std::int32_t, std::shared_ptr<TestItem>>* loadingObdIndex_ = nullptr;
};

}  // namespace tessaly

#endif  // TESSALY_DEVICES_ORGANE_ITEMS_HPP_
