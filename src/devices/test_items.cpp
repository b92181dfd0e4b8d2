#include "tessaly/devices/test_items.hpp"

#include <optional>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/devices/organe_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kElement = "Test";
constexpr const char* kLoadSource = "TestItem.loadXml";
// The class name under which the flag warnings reach the host.
constexpr const char* kWarningClass = "TestItem.LoadXml";
constexpr const char* kDuplicateType = "Duplicate Data, a data can be used only one time in one device";

std::string FlagKey(std::string_view dataName) { return "k" + std::string(dataName); }

// True when re-keying the entry under `oldKey` to `newKey` would collide with another entry.
bool RenameCollides(const FlagList& list, std::string_view oldKey, std::string_view newKey) {
  std::shared_ptr<DataPositionItem> entry = list.Find(oldKey);
  if (!entry) return false;
  std::int32_t held = list.PositionOfKey(newKey);
  return held != 0 && held != list.PositionOfKey(oldKey);
}

void Rekey(FlagList& list, std::string_view oldKey, std::string_view newKey) {
  std::int32_t position = list.PositionOfKey(oldKey);
  if (position == 0) return;
  std::shared_ptr<DataPositionItem> entry = list.Item(position);
  list.Remove(position);
  if (position > list.Count()) {
    list.Append(entry, newKey);
  } else {
    list.InsertBefore(position, entry, newKey);
  }
}

void WriteFlags(const FlagList& list, xml::Out parNode, const char* element) {
  for (const auto& placement : list) {
    xml::AppendText(xml::AppendElement(parNode, element), placement->dataName());
    xml::AppendCrLf(parNode);
  }
}

}  // namespace

// --- TestItem ---

void TestItem::set_OBD(std::int32_t value) {
  if (value == OBD_) return;
  if (value != 0) {
    std::shared_ptr<OrganeItem> device = parent();
    std::shared_ptr<TargetItem> target = device ? device->parent() : nullptr;
    if (target && target->Organes() && target->Organes()->GetDevicesTestWithObd(value))
      Raise(errc::kModel, "TestItem.OBD", "Duplicate OBD code");
  }
  OBD_ = value;
}

void TestItem::DeleteFlag(std::string_view dataName) {
  const std::string key = FlagKey(dataName);
  if (StoredFlag_.ContainsKey(key)) StoredFlag_.Remove(std::string_view(key));
  if (PresentFlag_.ContainsKey(key)) PresentFlag_.Remove(std::string_view(key));
}

void TestItem::RenameFlag(std::string_view oldName, std::string_view newName) {
  const std::string oldKey = FlagKey(oldName);
  const std::string newKey = FlagKey(newName);
  // Both lists are checked before either changes, so a refusal leaves the test as it was.
  if (RenameCollides(StoredFlag_, oldKey, newKey) || RenameCollides(PresentFlag_, oldKey, newKey))
    RaisePlatform(errc::kDuplicateKey);
  Rekey(StoredFlag_, oldKey, newKey);
  Rekey(PresentFlag_, oldKey, newKey);
}

void TestItem::clear() {
  parent_.reset();
  StoredFlag_.RemoveAll();
  PresentFlag_.RemoveAll();
}

void TestItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Type", testType_);
  if (OBD_ != 0) xml::SetAttr(parNode, "OBD", OBD_);
  if (Severity_ != 0) xml::SetAttr(parNode, "Severity", Severity_);
  if (!Autocheck_) xml::SetAttr(parNode, "Autocheck", std::string_view("0"));
  xml::AppendCrLf(parNode);
  if (!Description_.empty()) {
    xml::AppendText(xml::AppendElement(parNode, "Description"), Description_);
    xml::AppendCrLf(parNode);
  }
  WriteFlags(StoredFlag_, parNode, "StoredFlag");
  WriteFlags(PresentFlag_, parNode, "PresentFlag");
}

void TestItem::loadXml(pugi::xml_document&, pugi::xml_node parNode) {
  Err().Clear();
  std::optional<std::string_view> type = xml::Attr(parNode, "Type");
  if (!type) {
    Err().Raise(errc::kMissingName, kLoadSource, "TestItem.loadXml error : Type not found");
    return;
  }
  if (!Trap([&] { testType_ = ToInt32(*type); })) return;

  Description_ = xml::Text(xml::Child(parNode, "Description"));

  // A code that another test of the ECU already has is not an error of the document: the test
  // is kept without an OBD code.
  std::optional<std::string_view> obd = xml::Attr(parNode, "OBD");
  std::int32_t code = 0;
  if (!obd || !Trap([&] { code = ToInt32(*obd); })) {
    OBD_ = 0;
  } else {
    try {
      set_OBD(code);
    } catch (const Error& refusal) {
      OBD_ = 0;
      std::shared_ptr<OrganeItem> device = parent();
      std::shared_ptr<TargetItem> target = device ? device->parent() : nullptr;
      if (auto facade = DiagnosticsOf(target.get()))
        facade->ReportDiagnostic(Diagnostic::Action::kRepaired, parNode,
                                 "OBD of test " + IntText(testType_) + " in device " + device->organeName(),
                                 refusal.Description() + " " + IntText(code) + ", OBD set to 0");
    }
  }

  Severity_ = 0;
  Trap([&] { xml::ReadInt(parNode, "Severity", Severity_); });
  Autocheck_ = true;
  Trap([&] { xml::ReadBool(parNode, "Autocheck", Autocheck_); });

  ReadFlags(parNode, "StoredFlag", StoredFlag_);
  ReadFlags(parNode, "PresentFlag", PresentFlag_);
}

void TestItem::ReadFlags(pugi::xml_node parNode, const char* element, FlagList& list) {
  list.RemoveAll();
  std::shared_ptr<OrganeItem> device = parent();
  std::shared_ptr<TargetItem> target = device ? device->parent() : nullptr;
  ForEachChild(parNode, element, [&](pugi::xml_node child) {
    const std::string name = xml::Text(child);
    std::shared_ptr<DataPositionItem> placement = device ? device->FreezeFramePosition(name) : nullptr;
    if (placement) {
      const std::string key = FlagKey(name);
      if (!list.ContainsKey(key)) list.Append(placement, key);
      return;
    }
    // Flags must name data that the freeze-frame request places; others are left out, so that
    // saving the document again removes them.
    const std::string message = "Data '" + name + "' doesn't exist, remove from " + element + " list";
    Warn(target.get(), kWarningClass, message);
    if (auto facade = DiagnosticsOf(target.get()))
      facade->ReportDiagnostic(Diagnostic::Action::kDropped, child,
                               std::string(element) + " " + name + " in test " + IntText(testType_) + " of device " +
                                   device->organeName(),
                               message);
  });
}

// --- TestItems ---

std::shared_ptr<TestItem> TestItems::AddData(const std::shared_ptr<TestItem>& vData) {
  if (!vData) RaisePlatform(errc::kObjectNotSet);
  if (ItemType(vData->testType())) Raise(errc::kModel, "TestItems.AddData", kDuplicateType);
  return Append(vData, IntText(vData->testType()));
}

std::shared_ptr<TestItem> TestItems::Add(std::int32_t testType) {
  auto test = std::make_shared<TestItem>();
  test->set_testType(testType);
  return AddData(test);
}

std::shared_ptr<TestItem> TestItems::ItemType(std::int32_t testType) const { return inner_.Find(IntText(testType)); }

std::shared_ptr<TestItem> TestItems::ItemOBD(std::int32_t OBD) const {
  if (OBD == 0) return nullptr;
  return FindFirst([&](const TestItem& test) { return test.OBD() == OBD; });
}

std::shared_ptr<TestItem> TestItems::GetTestUsingData(std::string_view dataName) const {
  // Asked once per device by the where-used walks: the key is built in a buffer kept between
  // calls instead of a new text each time.
  thread_local std::string key;
  key.assign(1, 'k');
  key.append(dataName);
  return FindFirst([&](const TestItem& test) { return test.StoredFlag().ContainsKey(key); });
}

void TestItems::createXMLnode(xml::Out parNode) const {
  for (const auto& test : *this) {
    xml::AppendCrLf(parNode);
    test->createXMLnode(xml::AppendElement(parNode, kElement));
  }
}

void TestItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<OrganeItem>& parent) {
  Err().Clear();
  std::shared_ptr<TargetItem> target = parent ? parent->parent() : nullptr;
  ReadChildren(*this, parNode, kElement, [&](pugi::xml_node child) {
    auto test = std::make_shared<TestItem>();
    test->set_parent(parent);
    Trap([&] { test->loadXml(odoc, child); });
    if (!Err().Pending()) Trap([&] { AddData(test); });
    if (!Err().Pending()) return;
    // The test is dropped; its error stays pending for the caller.
    if (auto facade = DiagnosticsOf(target.get()))
      facade->ReportDiagnostic(Diagnostic::Action::kDropped, child,
                               "Test " + IntText(test->testType()) + " in device " + (parent ? parent->organeName() : ""),
                               Err().Description());
    test->clear();
  });
}

}  // namespace tessaly
