// TestItem and TestItems: the failure tests of one device. A test has a type (unique within its
// device), an OBD fault code (unique within the ECU, 0 meaning none), a severity, whether it runs
// as an automatic check, and two lists of data placements of the device's request: the data that
// tell that the failure is stored and the data that tell that it is present.
//
// TestItems is keyed by the decimal text of the test type; each flag list is keyed by "k"
// followed by the data name (so key look-ups ignore letter case).
//
// Thread safety: none; a device belongs to one document, used from one thread at a time.
#ifndef TESSALY_DEVICES_TEST_ITEMS_HPP_
#define TESSALY_DEVICES_TEST_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/keyed_collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class DataPositionItem;
class OrganeItem;

// A list of data placements keyed by "k" + data name.
using FlagList = KeyedCollection<DataPositionItem>;

class TestItem {
 public:
  TestItem() = default;

  std::int32_t testType() const noexcept { return testType_; }
  void set_testType(std::int32_t value) noexcept { testType_ = value; }
  const std::string& Description() const noexcept { return Description_; }
  void set_Description(std::string value) { Description_ = std::move(value); }
  std::int32_t Severity() const noexcept { return Severity_; }
  void set_Severity(std::int32_t value) noexcept { Severity_ = value; }
  bool Autocheck() const noexcept { return Autocheck_; }
  void set_Autocheck(bool value) noexcept { Autocheck_ = value; }

  // The OBD fault code; 0 means none. Setting the current value does nothing and 0 is stored
  // unchecked. Another code is refused (error 1, "Duplicate OBD code", the old value kept) when
  // a test of the ECU's devices already has it; a test outside a device of an ECU stores any
  // code.
  std::int32_t OBD() const noexcept { return OBD_; }
  void set_OBD(std::int32_t value);

  // The owning device, or null.
  std::shared_ptr<OrganeItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<OrganeItem>& value) { parent_ = value; }

  // The placements whose data tell that the failure is stored / present, keyed "k" + data
  // name. The lists themselves are not replaceable.
  FlagList& StoredFlag() noexcept { return StoredFlag_; }
  const FlagList& StoredFlag() const noexcept { return StoredFlag_; }
  FlagList& PresentFlag() noexcept { return PresentFlag_; }
  const FlagList& PresentFlag() const noexcept { return PresentFlag_; }

  // Removes the entry of `dataName` from both lists, where present.
  void DeleteFlag(std::string_view dataName);
  // Re-keys the entry of `oldName` under `newName` in both lists, where present; the entry
  // keeps its place. Error 457 (nothing changed) when a list already holds another entry under
  // the new name.
  void RenameFlag(std::string_view oldName, std::string_view newName);

  // Drops the parent and empties both lists.
  void clear();

  // Fills the given Test element. Its line breaks are carriage return + line feed.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the given Test element. A missing Type leaves error 100 pending and reads nothing
  // more. Flags are resolved against the placements of the device's request; a flag naming data
  // that the request does not place is left out and reported through WarningInfo.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  void ReadFlags(pugi::xml_node parNode, const char* element, FlagList& list);

  std::int32_t testType_ = 0;
  std::string Description_;
  std::int32_t OBD_ = 0;
  std::int32_t Severity_ = 0;
  bool Autocheck_ = true;
  FlagList StoredFlag_;
  FlagList PresentFlag_;
  std::weak_ptr<OrganeItem> parent_;
};

class TestItems : public Collection<TestItem> {
 public:
  // Adds `vData` under the decimal text of its type. Error 1 "Duplicate Data, a data can be
  // used only one time in one device" when a test of that type is held (nothing added).
  std::shared_ptr<TestItem> AddData(const std::shared_ptr<TestItem>& vData);
  // A new test of this type (no parent), added by AddData.
  std::shared_ptr<TestItem> Add(std::int32_t testType);

  // The test of that type, or null.
  std::shared_ptr<TestItem> ItemType(std::int32_t testType) const;
  // The first test with that non-zero OBD code; null for 0 or when none has it.
  std::shared_ptr<TestItem> ItemOBD(std::int32_t OBD) const;
  // The first test whose StoredFlag list holds an entry keyed "k" + dataName, or null.
  std::shared_ptr<TestItem> GetTestUsingData(std::string_view dataName) const;

  // Clears every test and empties the collection.
  void clear() { ClearItems(); }
  // Clears and removes the very same test; a test not held is ignored.
  void Delete(const std::shared_ptr<TestItem>& vData) { DeleteItem(vData.get()); }

  // Appends, for each test, carriage return + line feed and a Test element (nothing after the
  // last one).
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the Test children of `parNode` in document order, each with `parent` as its device.
  // A test that leaves an error pending, or repeats a type, is not added. Each test reads from a
  // clear error state, so only an error of the last test stays pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<OrganeItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_DEVICES_TEST_ITEMS_HPP_
