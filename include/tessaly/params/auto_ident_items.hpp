// Auto-identification records. An ECU answers an identification request with a diagnostic
// version number, a supplier code, a software number and a version; a diagnostic tool compares
// that answer with these records to recognise which ECU description fits the ECU it talks to.
// AutoIdentItem is one record, AutoIdentItems the target's list of them (the AutoIdents
// element of the document).
#ifndef TESSALY_PARAMS_AUTO_IDENT_ITEMS_HPP_
#define TESSALY_PARAMS_AUTO_IDENT_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class TargetItem;

class AutoIdentItem {
 public:
  // Drops the parent link.
  void clear() { parent_.reset(); }

  // The owning target, or null.
  std::shared_ptr<TargetItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<TargetItem>& value) { parent_ = value; }

  const std::string& Version() const { return Version_; }
  void set_Version(std::string value) { Version_ = std::move(value); }
  const std::string& Soft() const { return Soft_; }
  void set_Soft(std::string value) { Soft_ = std::move(value); }
  const std::string& SupplierCode() const { return SupplierCode_; }
  void set_SupplierCode(std::string value) { SupplierCode_ = std::move(value); }
  std::int32_t DiagNumber() const { return DiagNumber_; }
  void set_DiagNumber(std::int32_t value) { DiagNumber_ = value; }

  // True when both records carry the same four values (texts compared exactly).
  bool SameRecord(const AutoIdentItem& other) const;

  // Sets DiagVersion, Supplier, Soft and Version, in that order, on the given AutoIdent element;
  // all four are always written.
  void createXMLnode(pugi::xml_document&, pugi::xml_node element) const { createXMLnode(xml::Out(element)); }
  void createXMLnode(xml::Out element) const;
  // Reads an AutoIdent element. Errors are trapped: a missing attribute leaves error 91 pending,
  // a DiagVersion that is not an integer the conversion's error (13 or 6).
  void loadXml(pugi::xml_document& odoc, pugi::xml_node element);

 private:
  std::int32_t DiagNumber_ = 0;
  std::string SupplierCode_;
  std::string Soft_;
  std::string Version_;
  std::weak_ptr<TargetItem> parent_;
};

class AutoIdentItems : public Collection<AutoIdentItem> {
 public:
  AutoIdentItems() = default;

  // Creates a record with these values and parent and adds it, under `sKey` when it is not
  // empty. No duplicate test.
  std::shared_ptr<AutoIdentItem> Add(std::int32_t DiagNumber, std::string SupplierCode, std::string Soft,
                                     std::string Version, const std::shared_ptr<TargetItem>& parent,
                                     std::string_view sKey = {});
  // Clears and removes the first record that is the same record as `item` (four-field rule);
  // does nothing when none is.
  void Delete(const std::shared_ptr<AutoIdentItem>& item);
  // Adds an existing record, under `sKey` when it is not empty.
  std::shared_ptr<AutoIdentItem> AddData(const std::shared_ptr<AutoIdentItem>& item, std::string_view sKey = {});
  // 1-based position of the first record that is the same record as `item`, or 0.
  std::int32_t FindItem(const std::shared_ptr<AutoIdentItem>& item) const;
  // The first stored record that is the same record as `item`, or null.
  std::shared_ptr<AutoIdentItem> FindItemObject(const std::shared_ptr<AutoIdentItem>& item) const;
  // Clears every record, then removes them all.
  void clear() { ClearItems(); }

  // One AutoIdent element per record, in order, with nothing between them.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every AutoIdent child of `parNode` in document order. A record whose reading fails is
  // dropped; the error of the last dropped record stays pending for the caller.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<TargetItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_PARAMS_AUTO_IDENT_ITEMS_HPP_
