#include "tessaly/facade/reference_tables.hpp"

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly {
namespace {

void WriteName(xml::Out node, const std::string& name) {
  xml::AppendText(xml::AppendElement(node, "Name"), name);
}

}  // namespace

void ProtocolItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Code", code_);
  xml::SetBoolAttr(parNode, "multiPoint", multiPoint_);
  xml::SetAttr(parNode, "initMode", initMode_);
  WriteName(parNode, protocolName_);
}

void ProtocolItem::loadXml(pugi::xml_document&, pugi::xml_node parNode) {
  pugi::xml_node name = xml::Child(parNode, "Name");
  if (!name) Raise(errc::kModel, "ProtocolItem.loadXml", "ProtocolItem.loadXml : Protocol Name not found");
  protocolName_ = xml::Text(name);
  multiPoint_ = xml::Attr(parNode, "multiPoint") == "1";
  xml::ReadInt(parNode, "Code", code_);
  xml::ReadInt(parNode, "initMode", initMode_);
}

std::shared_ptr<ProtocolItem> ProtocolItems::Add(std::int32_t code, std::string protocolName, bool multiPoint,
                                                 std::int32_t initMode, std::string_view sKey) {
  auto item = std::make_shared<ProtocolItem>();
  item->set_code(code);
  item->set_protocolName(std::move(protocolName));
  item->set_multiPoint(multiPoint);
  item->set_initMode(initMode);
  return Append(item, sKey);
}

std::shared_ptr<ProtocolItem> ProtocolItems::AddData(const std::shared_ptr<ProtocolItem>& vData, std::string_view sKey) {
  return Append(vData, sKey);
}

std::shared_ptr<ProtocolItem> ProtocolItems::ItemName(std::string_view name) const {
  return FindFirst([&](const ProtocolItem& p) { return p.protocolName() == name; });
}

std::shared_ptr<ProtocolItem> ProtocolItems::ItemId(std::int32_t code) const {
  return FindFirst([&](const ProtocolItem& p) { return p.code() == code; });
}

void ProtocolItems::createXMLnode(xml::Out parNode) const {
  WriteStandardItems(*this, parNode, "Protocol");
}

void ProtocolItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  ReadStandardItems(odoc, parNode, "Protocol", [] { return std::make_shared<ProtocolItem>(); },
                    [&](const auto& item) { AddData(item); });
}

template <class Kind>
void IdLabelItem<Kind>::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Id", id_);
  WriteName(parNode, libelle_);
}

template <class Kind>
void IdLabelItem<Kind>::loadXml(pugi::xml_document&, pugi::xml_node parNode) {
  pugi::xml_node name = xml::Child(parNode, "Name");
  if (!name) Raise(errc::kModel, Kind::kSource, Kind::kNameMissing);
  libelle_ = xml::Text(name);
  auto id = xml::Attr(parNode, "Id");
  if (!id) Raise(errc::kModel, Kind::kSource, Kind::kIdMissing);
  id_ = ToInt32(*id);
}

template <class Kind>
auto IdLabelItems<Kind>::Add(std::int32_t id, std::string libelle, std::string_view sKey) -> std::shared_ptr<ItemType> {
  auto item = std::make_shared<ItemType>();
  item->set_id(id);
  item->set_libelle(std::move(libelle));
  return this->Append(item, sKey);
}

template <class Kind>
auto IdLabelItems<Kind>::AddData(const std::shared_ptr<ItemType>& vData, std::string_view sKey)
    -> std::shared_ptr<ItemType> {
  return this->Append(vData, sKey);
}

template <class Kind>
auto IdLabelItems<Kind>::ItemName(std::string_view libelle) const -> std::shared_ptr<ItemType> {
  return this->FindFirst([&](const ItemType& e) { return e.libelle() == libelle; });
}

template <class Kind>
auto IdLabelItems<Kind>::ItemId(std::int32_t id) const -> std::shared_ptr<ItemType> {
  return this->FindFirst([&](const ItemType& e) { return e.id() == id; });
}

template <class Kind>
void IdLabelItems<Kind>::createXMLnode(xml::Out parNode) const {
  WriteStandardItems(*this, parNode, Kind::kElement);
}

template <class Kind>
void IdLabelItems<Kind>::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  ReadStandardItems(odoc, parNode, Kind::kElement, [] { return std::make_shared<ItemType>(); },
                    [&](const auto& item) { AddData(item); });
}

template class IdLabelItem<FailureKind>;
template class IdLabelItem<DeviceTypeKind>;
template class IdLabelItems<FailureKind>;
template class IdLabelItems<DeviceTypeKind>;

}  // namespace tessaly
