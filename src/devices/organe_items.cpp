#include "tessaly/devices/organe_items.hpp"

#include <optional>

#include "common/section_release.hpp"
#include "common/xml_util.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/facade/reference_tables.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kElement = "Device";
constexpr const char* kLoadSource = "OrganeItem.loadXml";

std::string DeviceKey(std::string_view name) { return "k" + std::string(name); }

// The device types of the facade that owns the device's ECU, or null.
std::shared_ptr<TypeOrganeItems> DeviceTypesOf(const OrganeItem& device) {
  std::shared_ptr<TargetItem> target = device.parent();
  std::shared_ptr<TessalyLibXml> facade = target ? target->parent() : nullptr;
  return facade ? facade->typeOrganes() : nullptr;
}

}  // namespace

// --- OrganeItem ---

void OrganeItem::clear() {
  request_.reset();
  if (DeviceDatas_) DeviceDatas_->clear();
  DeviceDatas_.reset();
  if (Tests_) Tests_->clear();
  Tests_.reset();
  parent_.reset();
}

void OrganeItem::set_request(const std::shared_ptr<RequestItem>& value) {
  request_ = value;
  requestName_ = value ? value->requestName() : std::string();
}

const std::shared_ptr<TestItems>& OrganeItem::Tests() const {
  if (!Tests_) Tests_ = std::make_shared<TestItems>();
  return Tests_;
}

void OrganeItem::set_OrganeTypeId(std::int32_t value) {
  OrganeTypeId_ = value;
  if (std::shared_ptr<TypeOrganeItems> types = DeviceTypesOf(*this))
    if (auto type = types->ItemId(value)) OrganeTypeName_ = type->libelle();
}

void OrganeItem::set_OrganeTypeName(std::string value) {
  OrganeTypeName_ = std::move(value);
  if (std::shared_ptr<TypeOrganeItems> types = DeviceTypesOf(*this))
    if (auto type = types->ItemName(OrganeTypeName_)) OrganeTypeId_ = type->id();
}

void OrganeItem::RenameData(const std::string& oldName, const std::string& newName) {
  if (std::shared_ptr<DeviceDataItem> link = GetDeviceDataUsingData(oldName)) link->set_dataName(newName);
  if (std::shared_ptr<TestItem> test = GetTestUsingData(oldName)) test->RenameFlag(oldName, newName);
}

std::shared_ptr<DeviceDataItem> OrganeItem::GetDeviceDataUsingData(std::string_view dataName) const {
  return DeviceDatas_ ? DeviceDatas_->ItemName(dataName) : nullptr;
}

std::shared_ptr<TestItem> OrganeItem::GetTestUsingData(std::string_view dataName) const {
  return Tests_ ? Tests_->GetTestUsingData(dataName) : nullptr;
}

void OrganeItem::DeleteDataPosition(const std::shared_ptr<DataPositionItem>& dataPosition) {
  if (!dataPosition) RaisePlatform(errc::kObjectNotSet);
  const std::string& dataName = dataPosition->dataName();
  if (std::shared_ptr<DeviceDataItem> link = GetDeviceDataUsingData(dataName)) {
    DeviceDatas_->Delete(link);
  } else if (std::shared_ptr<TestItem> test = GetTestUsingData(dataName)) {
    test->DeleteFlag(dataName);
  }
}

std::shared_ptr<DataPositionItem> OrganeItem::FreezeFramePosition(std::string_view dataName) const {
  std::shared_ptr<TargetItem> target = parent();
  if (!target || !target->Requests()) return nullptr;
  std::shared_ptr<RequestItem> request = target->Requests()->ItemName(requestName_);
  if (!request || !request->DataPositions()) return nullptr;
  return request->DataPositions()->ItemName(dataName);
}

void OrganeItem::createXMLnode(xml::Out element) const {
  xml::SetAttr(element, "Name", organeName_);
  if (OrganeDTC_ != 0) xml::SetAttr(element, "DTC", OrganeDTC_);
  if (OrganeOBD_ != 0) xml::SetAttr(element, "OBD", OrganeOBD_);
  if (OrganeTypeId_ != 1) xml::SetAttr(element, "Type", OrganeTypeId_);
  if (!requestName_.empty()) xml::SetAttr(element, "FreezeFrame", requestName_);
  xml::AppendLf(element);
  if (!Mnemonique_.empty()) {
    xml::AppendText(xml::AppendElement(element, "Mnemonic"), Mnemonique_);
    xml::AppendLf(element);
  }
  if (DeviceDatas_) {
    DeviceDatas_->createXMLnode(element);
    xml::AppendLf(element);
  }
  if (Tests_) {
    Tests_->createXMLnode(element);
    xml::AppendLf(element);
  }
}

void OrganeItem::loadXml(pugi::xml_document& odoc, pugi::xml_node element) {
  Err().Clear();
  std::optional<std::string_view> name = xml::Attr(element, "Name");
  if (!name) {
    Err().Raise(errc::kMissingName, kLoadSource, "OrganeItem.loadXml error : Device Name not defined");
    return;
  }
  xml::Store(organeName_, *name);
  Mnemonique_ = xml::Text(xml::Child(element, "Mnemonic"));

  // The first error of the device's own values is kept apart: the readers of the links and
  // tests below start from a clear state, and it must still be pending when this returns.
  std::optional<Error> own;
  auto keepOwn = [&] {
    if (!own && Err().Pending()) own = Err().ToError();
  };
  std::shared_ptr<TargetItem> target = parent();

  std::int32_t typeId = 1;
  if (std::optional<std::string_view> type = xml::Attr(element, "Type")) {
    if (!Trap([&] { typeId = ToInt32(*type); })) {
      keepOwn();
      typeId = 1;
      if (auto facade = DiagnosticsOf(target.get()))
        facade->ReportDiagnostic(Diagnostic::Action::kRepaired, element, "Type of device " + organeName_,
                                 Err().Description() + ", type set to 1");
    }
  }
  set_OrganeTypeId(typeId);
  OrganeDTC_ = 0;
  Trap([&] { xml::ReadInt(element, "DTC", OrganeDTC_); });
  keepOwn();
  OrganeOBD_ = 0;
  Trap([&] { xml::ReadInt(element, "OBD", OrganeOBD_); });
  keepOwn();
  requestName_.clear();
  xml::ReadText(element, "FreezeFrame", requestName_);

  std::shared_ptr<OrganeItem> self = shared_from_this();
  if (DeviceDatas_) DeviceDatas_->clear();
  DeviceDatas_ = std::make_shared<DeviceDataItems>();
  DeviceDatas_->loadXml(odoc, element, self);
  if (Tests_) Tests_->clear();
  Tests_ = std::make_shared<TestItems>();
  Tests_->loadXml(odoc, element, self);

  request_.reset();
  if (!requestName_.empty() && target && target->Requests()) request_ = target->Requests()->ItemName(requestName_);
  if (own) Err().Raise(*own);
}

// --- OrganeItems ---

std::shared_ptr<OrganeItem> OrganeItems::AddData(const std::shared_ptr<OrganeItem>& item) {
  if (!item) RaisePlatform(errc::kObjectNotSet);
  return Append(item, DeviceKey(item->organeName()));
}

std::shared_ptr<OrganeItem> OrganeItems::Add(std::string organeName, std::string Mnemonique, std::int32_t OrganeDTC,
                                             std::int32_t OrganeOBD) {
  auto device = std::make_shared<OrganeItem>();
  device->set_organeName(std::move(organeName));
  device->set_Mnemonique(std::move(Mnemonique));
  device->set_OrganeDTC(OrganeDTC);
  device->set_OrganeOBD(OrganeOBD);
  return AddData(device);
}

void OrganeItems::rename(const std::shared_ptr<OrganeItem>& item, const std::string& newName) {
  if (!item) RaisePlatform(errc::kObjectNotSet);
  std::shared_ptr<OrganeItem> holder = ItemName(newName);
  if (holder && holder != item) Raise(errc::kModel, "OrganeItems.rename", "Duplicate device (" + newName + ")");
  if (item->organeName() == newName) return;
  // The device leaves its place (a device that the collection does not hold is renamed and
  // appended all the same).
  if (std::int32_t position = inner_.PositionOf(item.get()); position != 0) inner_.Remove(position);
  item->set_organeName(newName);
  Append(item, DeviceKey(newName));
}

std::shared_ptr<OrganeItem> OrganeItems::ItemName(std::string_view name) const {
  // Looked up once per reference while a document loads: the key is built in a buffer kept
  // between calls instead of a new text each time.
  thread_local std::string key;
  key.assign(1, 'k');
  key.append(name);
  return inner_.Find(key);
}

void OrganeItems::DeleteDataPosition(const std::shared_ptr<DataPositionItem>& dataPosition) {
  for (const auto& device : *this) device->DeleteDataPosition(dataPosition);
}

std::shared_ptr<TestItem> OrganeItems::GetDevicesTestWithObd(std::int32_t obd) const {
  if (loadingObdIndex_ != nullptr) {
    if (obd == 0) return nullptr;
    auto found = loadingObdIndex_->find(obd);
    return found == loadingObdIndex_->end() ? nullptr : found->second;
  }
  for (const auto& device : *this) {
    // A device whose tests were never read has none; they are not created for the search.
    if (!device->Tests_) continue;
    if (std::shared_ptr<TestItem> test = device->Tests_->ItemOBD(obd)) return test;
  }
  return nullptr;
}

void OrganeItems::createXMLnode(xml::Out parNode) const {
  for (const auto& device : *this) {
    device->createXMLnode(xml::AppendElement(parNode, kElement));
    xml::AppendLf(parNode);
  }
}

void OrganeItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<TargetItem>& parent) {
  Err().Clear();
  // The OBD codes of the devices held, first holder first; each device added brings its own.
  std::unordered_map<std::int32_t, std::shared_ptr<TestItem>> obdIndex;
  auto indexCodes = [&obdIndex](const OrganeItem& device) {
    if (!device.Tests_) return;
    for (const auto& test : *device.Tests_)
      if (test->OBD() != 0) obdIndex.emplace(test->OBD(), test);
  };
  for (const auto& device : *this) indexCodes(*device);
  struct IndexInUse {
    std::unordered_map<std::int32_t, std::shared_ptr<TestItem>>*& slot;
    ~IndexInUse() { slot = nullptr; }
  } inUse{loadingObdIndex_};
  loadingObdIndex_ = &obdIndex;

  auto read = [&](pugi::xml_node child) {
    auto device = std::make_shared<OrganeItem>();
    device->set_parent(parent);
    Trap([&] { device->loadXml(odoc, child); });
    if (Trap([&] { AddData(device); })) {
      indexCodes(*device);
      // A device without a name is still kept, nameless and empty: its reading stopped there.
      if (Err().Number() == errc::kMissingName && device->organeName().empty())
        if (auto facade = DiagnosticsOf(parent.get()))
          facade->ReportDiagnostic(Diagnostic::Action::kRepaired, child, "Device without Name", Err().Description());
      return;
    }
    if (auto facade = DiagnosticsOf(parent.get()))
      facade->ReportDiagnostic(Diagnostic::Action::kDropped, child, "Device " + device->organeName(),
                               Err().Description());
    device->clear();
  };
  for (pugi::xml_node child = parNode.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    if (child.type() == pugi::node_element && xml::BaseName(child) == kElement) read(child);
    SectionRelease::ChildRead(parNode, child);
    child = next;
  }
}

}  // namespace tessaly
