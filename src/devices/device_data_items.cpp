#include "tessaly/devices/device_data_items.hpp"

#include <optional>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/devices/organe_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kElement = "DeviceData";
constexpr const char* kDuplicate = "Duplicate Data, a data can be used only one time in one device";

}  // namespace

// --- DeviceDataItem ---

std::shared_ptr<DataItem> DeviceDataItem::data() const {
  std::shared_ptr<OrganeItem> device = parent();
  if (!device) RaisePlatform(errc::kObjectNotSet);
  std::shared_ptr<TargetItem> target = device->parent();
  if (!target || !target->datas()) RaisePlatform(errc::kObjectNotSet);
  return target->datas()->ItemName(dataName_);
}

void DeviceDataItem::set_data(const std::shared_ptr<DataItem>& value) {
  if (value) dataName_ = value->dataName();
}

void DeviceDataItem::createXMLnode(xml::Out element) const {
  xml::SetAttr(element, "Name", dataName_);
  xml::SetBoolAttr(element, "FailureFlag", FlagPanne_);
}

void DeviceDataItem::loadXml(pugi::xml_document&, pugi::xml_node element) {
  Err().Clear();
  std::optional<std::string_view> name = xml::Attr(element, "Name");
  if (!name) {
    // The name is what the link stands for: without it the failure of the read is passed on as
    // a refusal of the model.
    Err().Raise(errc::kModel, kLibrarySource, PlatformDescription(errc::kObjectNotSet));
    return;
  }
  xml::Store(dataName_, *name);
  FlagPanne_ = false;
  Trap([&] { xml::ReadBool(element, "FailureFlag", FlagPanne_); });
}

// --- DeviceDataItems ---

std::shared_ptr<DeviceDataItem> DeviceDataItems::AddData(const std::shared_ptr<DeviceDataItem>& item) {
  if (!item) RaisePlatform(errc::kObjectNotSet);
  if (ItemName(item->dataName())) Raise(errc::kModel, "DeviceDataItems.AddData", kDuplicate);
  return Append(item);
}

std::shared_ptr<DeviceDataItem> DeviceDataItems::Add(std::string dataName) {
  auto item = std::make_shared<DeviceDataItem>();
  item->set_dataName(std::move(dataName));
  return AddData(item);
}

std::shared_ptr<DeviceDataItem> DeviceDataItems::ItemName(std::string_view dataName) const {
  return FindFirst([&](const DeviceDataItem& link) { return link.dataName() == dataName; });
}

void DeviceDataItems::createXMLnode(xml::Out parNode) const {
  for (const auto& link : *this) link->createXMLnode(xml::AppendElement(parNode, kElement));
}

void DeviceDataItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode,
                              const std::shared_ptr<OrganeItem>& parent) {
  Err().Clear();
  std::shared_ptr<TargetItem> target = parent ? parent->parent() : nullptr;
  ReadChildren(*this, parNode, kElement, [&](pugi::xml_node child) {
    auto link = std::make_shared<DeviceDataItem>();
    link->set_parent(parent);
    Trap([&] { link->loadXml(odoc, child); });
    if (!Err().Pending()) Trap([&] { AddData(link); });
    if (Err().Pending()) {
      if (auto facade = DiagnosticsOf(target.get()))
        facade->ReportDiagnostic(Diagnostic::Action::kDropped, child,
                                 "DeviceData " + link->dataName() + " in device " + (parent ? parent->organeName() : ""),
                                 Err().Description());
      link->clear();
      // Links that cannot be kept are left out without a report to the caller.
      Err().Clear();
    }
  });
}

}  // namespace tessaly
