// DataItem and DataItems: the named quantities an ECU reports or accepts inside its requests.
// A data item is either a numeric field of a number of bits (signed or not, scaled to a physical
// value with a unit, or enumerated through a value list) or a string of bytes (possibly shown as
// ASCII text). The library stores the definition only; it never encodes or decodes a value.
//
// DataItems holds all data of one ECU, keyed by "k" followed by the name, so look-ups by name
// ignore letter case.
#ifndef TESSALY_DATA_DATA_ITEMS_HPP_
#define TESSALY_DATA_DATA_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"
#include "tessaly/data/data_liste_items.hpp"

namespace tessaly {

class TargetItem;

class DataItem : public std::enable_shared_from_this<DataItem> {
 public:
  DataItem() = default;

  // The name, unique within the ECU. The setter refuses (error 1, "Duplicate name (" + name +
  // ")") a name that the parent ECU's data already hold, the item's own current name included;
  // without a parent it stores any name.
  const std::string& dataName() const noexcept { return dataName_; }
  void set_dataName(std::string value);

  // Width in bits (bytes count 8 bits each).
  std::int32_t NumberBits() const noexcept { return NumberBits_; }
  void set_NumberBits(std::int32_t value) noexcept { NumberBits_ = value; }
  // true: a numeric field (Bits); false: a string of bytes (Bytes).
  bool numerique() const noexcept { return numerique_; }
  void set_numerique(bool value) noexcept { numerique_ = value; }
  // true: the numeric value is enumerated by DataListes instead of scaled.
  bool liste() const noexcept { return liste_; }
  void set_liste(bool value) noexcept { liste_ = value; }
  const std::string& Unite() const noexcept { return Unite_; }
  void set_Unite(std::string value) { Unite_ = std::move(value); }
  bool Signe() const noexcept { return Signe_; }
  void set_Signe(bool value) noexcept { Signe_ = value; }
  // Scaling step, offset and divisor (XML Step, Offset, DivideBy), stored only.
  double CoeffA() const noexcept { return CoeffA_; }
  void set_CoeffA(double value) noexcept { CoeffA_ = value; }
  double CoeffB() const noexcept { return CoeffB_; }
  void set_CoeffB(double value) noexcept { CoeffB_ = value; }
  double CoeffC() const noexcept { return CoeffC_; }
  void set_CoeffC(double value) noexcept { CoeffC_ = value; }
  // Display format of the physical value (XML Format), stored unchanged.
  const std::string& DataFormat() const noexcept { return DataFormat_; }
  void set_DataFormat(std::string value) { DataFormat_ = std::move(value); }
  bool Ascii() const noexcept { return Ascii_; }
  void set_Ascii(bool value) noexcept { Ascii_ = value; }
  const std::string& Mnemo() const noexcept { return Mnemo_; }
  void set_Mnemo(std::string value) { Mnemo_ = std::move(value); }
  // Comment (XML Comment).
  const std::string& Description() const noexcept { return Description_; }
  void set_Description(std::string value) { Description_ = std::move(value); }
  // Long description (XML Description).
  const std::string& Fiche() const noexcept { return Fiche_; }
  void set_Fiche(std::string value) { Fiche_ = std::move(value); }
  // The value list, or null when none was read or assigned.
  const std::shared_ptr<DataListeItems>& DataListes() const noexcept { return DataListes_; }
  void set_DataListes(std::shared_ptr<DataListeItems> value) { DataListes_ = std::move(value); }

  // The owning ECU, or null.
  std::shared_ptr<TargetItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<TargetItem>& value) { parent_ = value; }

  // Drops the parent, and clears and drops the value list.
  void clear();
  // A copy whose parent is `parent` (set first, so the name goes through the checking setter
  // against that ECU's data), with a clone of the value list.
  std::shared_ptr<DataItem> clone(const std::shared_ptr<TargetItem>& parent) const;

  // Fills the given Data element.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the given Data element. A missing Name leaves error 100 pending and reads nothing
  // more; other failures of single values leave their error pending and the reading goes on.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  void ResetNumeric();

  std::string dataName_;
  std::int32_t NumberBits_ = 8;
  bool numerique_ = true;
  bool liste_ = false;
  std::string Unite_;
  bool Signe_ = false;
  double CoeffA_ = 1.0;
  double CoeffB_ = 0.0;
  double CoeffC_ = 1.0;
  std::string DataFormat_;
  bool Ascii_ = false;
  std::string Mnemo_;
  std::string Description_;
  std::string Fiche_;
  std::shared_ptr<DataListeItems> DataListes_;
  std::weak_ptr<TargetItem> parent_;
};

class DataItems : public Collection<DataItem> {
 public:
  // Appends `vData` under "k" + its name; a name already held (in any letter case) is error 457.
  std::shared_ptr<DataItem> AddData(const std::shared_ptr<DataItem>& vData);
  // A new item with this name (no parent), added by AddData.
  std::shared_ptr<DataItem> Add(std::string dataName);
  // Refuses a name held exactly (error 1, "Duplicate data name '" + name + "'"), then inserts
  // before the LAST item whose name sorts after the new one (appends when there is none).
  std::shared_ptr<DataItem> AddDataSorted(const std::shared_ptr<DataItem>& vData);
  // Renames `vData` and re-inserts it with AddDataSorted. Refuses a name held by another item
  // (error 1, "Duplicate data (" + newName + ")"); its own exact name does nothing.
  void rename(const std::shared_ptr<DataItem>& vData, const std::string& newName);

  // The item keyed "k" + name (letter case ignored), or null.
  std::shared_ptr<DataItem> ItemName(std::string_view name) const;

  // Clears every item and empties the collection.
  void clear() { ClearItems(); }
  // Clears and removes the very same item; an item not held is ignored.
  void Delete(const std::shared_ptr<DataItem>& vData) { DeleteItem(vData.get()); }

  // Writes, for each item, a line feed and a Data element into `parNode` (no line feed after
  // the last one).
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Data child of `parNode` in document order, each with parent `parent`, adding
  // it with AddData. An item whose name repeats an earlier one is dropped; errors are cleared,
  // so none is left pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<TargetItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_DATA_DATA_ITEMS_HPP_
