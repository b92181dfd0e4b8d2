// The three reference tables of the global parameters: protocols, failure types and device
// types. Each entry has a numeric identifier and a display name picked by language. The facade
// holds one table of each; ECU documents refer to their entries by number.
#ifndef TESSALY_FACADE_REFERENCE_TABLES_HPP_
#define TESSALY_FACADE_REFERENCE_TABLES_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

// One protocol: name, multi-point flag, initialisation mode and code.
class ProtocolItem {
 public:
  const std::string& protocolName() const { return protocolName_; }
  void set_protocolName(std::string value) { protocolName_ = std::move(value); }
  bool multiPoint() const { return multiPoint_; }
  void set_multiPoint(bool value) { multiPoint_ = value; }
  std::int32_t initMode() const { return initMode_; }
  void set_initMode(std::int32_t value) { initMode_ = value; }
  std::int32_t code() const { return code_; }
  void set_code(std::int32_t value) { code_ = value; }

  void clear() {}
  // Writes Code, multiPoint, initMode and one Name child into the given Protocol element.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads a Protocol element: the first Name child is the name (error 1 "ProtocolItem.loadXml :
  // Protocol Name not found" without one), then Code, multiPoint and initMode.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  std::string protocolName_;
  bool multiPoint_ = false;
  std::int32_t initMode_ = 0;
  std::int32_t code_ = 0;
};

class ProtocolItems : public Collection<ProtocolItem> {
 public:
  std::shared_ptr<ProtocolItem> Add(std::int32_t code, std::string protocolName, bool multiPoint,
                                    std::int32_t initMode, std::string_view sKey = {});
  std::shared_ptr<ProtocolItem> AddData(const std::shared_ptr<ProtocolItem>& vData, std::string_view sKey = {});
  // First protocol with that exact name, or nullptr.
  std::shared_ptr<ProtocolItem> ItemName(std::string_view name) const;
  // First protocol with that code, or nullptr.
  std::shared_ptr<ProtocolItem> ItemId(std::int32_t code) const;
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);
};

// An entry of the failure-type or device-type table: a label and an identifier. `Kind` supplies
// the XML element name and the reader's error texts.
template <class Kind>
class IdLabelItem {
 public:
  const std::string& libelle() const { return libelle_; }
  void set_libelle(std::string value) { libelle_ = std::move(value); }
  std::int32_t id() const { return id_; }
  void set_id(std::int32_t value) { id_ = value; }

  void clear() {}
  // Writes Id and one Name child into the given element.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the first Name child and Id; a missing one raises error 1 with the kind's message.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  std::string libelle_;
  std::int32_t id_ = 0;
};

template <class Kind>
class IdLabelItems : public Collection<IdLabelItem<Kind>> {
 public:
  using ItemType = IdLabelItem<Kind>;
  std::shared_ptr<ItemType> Add(std::int32_t id, std::string libelle, std::string_view sKey = {});
  std::shared_ptr<ItemType> AddData(const std::shared_ptr<ItemType>& vData, std::string_view sKey = {});
  // First entry with that exact label, or nullptr.
  std::shared_ptr<ItemType> ItemName(std::string_view libelle) const;
  // First entry with that identifier, or nullptr.
  std::shared_ptr<ItemType> ItemId(std::int32_t id) const;
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);
};

struct FailureKind {
  static constexpr const char* kElement = "Failure";
  static constexpr const char* kSource = "PanneItem.loadXml";
  static constexpr const char* kNameMissing = "PanneItem.loadXml : Failure Name not found";
  static constexpr const char* kIdMissing = "PanneItem.loadXml : Id not found";
};
struct DeviceTypeKind {
  static constexpr const char* kElement = "DeviceType";
  static constexpr const char* kSource = "TypeOrganeItem.loadXml";
  static constexpr const char* kNameMissing = "TypeOrganeItem.loadXml : Device type Name not found";
  static constexpr const char* kIdMissing = "TypeOrganeItem.loadXml : Id not found";
};

// A failure type (failure-reporting type of an ECU) and its table.
using PanneItem = IdLabelItem<FailureKind>;
class PanneItems : public IdLabelItems<FailureKind> {};
// A device type and its table.
using TypeOrganeItem = IdLabelItem<DeviceTypeKind>;
class TypeOrganeItems : public IdLabelItems<DeviceTypeKind> {};

}  // namespace tessaly

#endif  // TESSALY_FACADE_REFERENCE_TABLES_HPP_
