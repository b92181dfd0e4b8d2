#include "tessaly/data/data_position_items.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kLoadSource = "DataPositionItem.loadXml";

std::string PositionDescription(pugi::xml_node node, const std::shared_ptr<RequestItem>& request) {
  std::string what = "DataItem";
  if (auto name = xml::Attr(node, "Name")) what += " " + std::string(*name);
  if (request) what += " in request " + request->requestName();
  return what;
}

// The refusal of a data name already placed in the request.
[[noreturn]] void RaiseDuplicatePosition() {
  Raise(errc::kModel, "DataPositionItems.AddData",
        "Duplicate Data, a data can be used only one time in the same request");
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// DataPositionItem

std::shared_ptr<TargetItem> DataPositionItem::Target() const {
  std::shared_ptr<RequestItem> request = parent();
  return request ? request->parent() : nullptr;
}

bool DataPositionItem::DefaultLittleEndian() const {
  std::shared_ptr<TargetItem> target = Target();
  return target && target->Parametres() && target->Parametres()->LittleEndian();
}

std::shared_ptr<DataItem> DataPositionItem::data() const {
  std::shared_ptr<TargetItem> target = Target();
  if (!target || !target->datas()) return nullptr;
  return target->datas()->ItemName(dataName_);
}

void DataPositionItem::set_data(const std::shared_ptr<DataItem>& value) {
  if (!value) RaisePlatform(errc::kObjectNotSet);
  dataName_ = value->dataName();
}

void DataPositionItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Name", std::string_view(dataName_));
  if (reference_) xml::SetAttr(parNode, "Ref", std::string_view("1"));
  xml::SetAttr(parNode, "FirstByte", StartOctet_);
  if (StartBit_ != 0) xml::SetAttr(parNode, "BitOffset", StartBit_);
  if (LittleEndian_ != DefaultLittleEndian())
    xml::SetAttr(parNode, "Endian", std::string_view(LittleEndian_ ? "Little" : "Big"));
}

void DataPositionItem::loadXml(pugi::xml_document& /*odoc*/, pugi::xml_node parNode) {
  Err().Clear();
  auto name = xml::Attr(parNode, "Name");
  if (!name) {
    Err().Raise(errc::kModel, kLoadSource, PlatformDescription(errc::kObjectNotSet));
    return;
  }
  xml::Store(dataName_, *name);

  if (!data()) {
    std::shared_ptr<RequestItem> request = parent();
    Err().Raise(errc::kModel, kLoadSource,
                "Data name '" + dataName_ + "' not found, request : " + (request ? request->requestName() : std::string()));
    return;
  }

  Trap([&] { xml::ReadInt(parNode, "FirstByte", StartOctet_); });
  Trap([&] { xml::ReadInt(parNode, "BitOffset", StartBit_); });
  Trap([&] { xml::ReadBool(parNode, "Ref", reference_); });

  // Without Endian the position follows the ECU's byte order; a text other than "Little" or
  // "Big" counts as big-endian.
  if (auto endian = xml::Attr(parNode, "Endian")) {
    LittleEndian_ = (*endian == "Little");
  } else {
    LittleEndian_ = DefaultLittleEndian();
  }

  if (dataName_.empty()) Err().Raise(errc::kModel, kLoadSource, "DataPositionItem.loadXml error : Dataname missing");
}

// ---------------------------------------------------------------------------------------------
// DataPositionItems

std::shared_ptr<DataPositionItem> DataPositionItems::AddData(const std::shared_ptr<DataPositionItem>& vData) {
  if (ItemName(vData->dataName())) RaiseDuplicatePosition();
  return Append(vData);
}

std::shared_ptr<DataPositionItem> DataPositionItems::Add(std::string dataName) {
  auto item = std::make_shared<DataPositionItem>();
  item->set_dataName(std::move(dataName));
  return AddData(item);
}

std::shared_ptr<DataPositionItem> DataPositionItems::ItemName(std::string_view dataName) const {
  return FindFirst([&](const DataPositionItem& item) { return item.dataName() == dataName; });
}

void DataPositionItems::createXMLnode(xml::Out parNode) const {
  for (const auto& item : inner_) {
    xml::Out element = xml::AppendElement(parNode, "DataItem");
    item->createXMLnode(element);
    if (item->param()) xml::SetAttr(element, "Param", std::string_view("1"));
    xml::AppendLf(parNode);
  }
}

void DataPositionItems::createXMLnodeType(xml::Out parNode, bool param) const {
  for (const auto& item : inner_) {
    if (item->param() != param) continue;
    item->createXMLnode(xml::AppendElement(parNode, "DataItem"));
    xml::AppendLf(parNode);
  }
}

void DataPositionItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode,
                                const std::shared_ptr<RequestItem>& parent) {
  Read(odoc, parNode, parent, nullptr);
}

void DataPositionItems::loadXmlType(pugi::xml_document& odoc, pugi::xml_node parNode,
                                    const std::shared_ptr<RequestItem>& parent, bool param) {
  Read(odoc, parNode, parent, &param);
}

void DataPositionItems::Read(pugi::xml_document& odoc, pugi::xml_node parNode,
                             const std::shared_ptr<RequestItem>& parent, const bool* param) {
  Err().Clear();
  std::shared_ptr<TargetItem> target = parent ? parent->parent() : nullptr;
  // The duplicate refusal of AddData: a short list is scanned, a longer one gets a set of the
  // names placed so far (views of the held items' names), so that each check takes constant
  // time however many positions a request has.
  constexpr std::int32_t kScanned = 8;
  std::unordered_set<std::string_view> placed;
  auto alreadyPlaced = [&](std::string_view name) {
    if (Count() < kScanned) return ItemName(name) != nullptr;
    if (placed.empty())
      for (const auto& held : inner_) placed.insert(held->dataName());
    return !placed.insert(name).second;
  };
  ReadChildren(*this, parNode, "DataItem", [&](pugi::xml_node child) {
    auto item = std::make_shared<DataPositionItem>();
    item->set_parent(parent);
    if (param) item->set_param(*param);
    item->loadXml(odoc, child);
    // A position naming unknown data, or data already placed in this request, is dropped.
    if (!Err().Pending()) Trap([&] {
      if (alreadyPlaced(item->dataName())) RaiseDuplicatePosition();
      Append(item);
    });
    if (Err().Pending()) {
      if (auto f = DiagnosticsOf(target.get()))
        f->ReportDiagnostic(Diagnostic::Action::kDropped, child, PositionDescription(child, parent), Err().Description());
      Err().Clear();
    }
  });
}

}  // namespace tessaly
