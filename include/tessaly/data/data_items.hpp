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
  // Unit of the scaled value (XML Unit).
  const std::string& Unite() const noexcept { return scaling_ ? scaling_->unit : EmptyText(); }
  void set_Unite(std::string value) { SetText(&Scaling::unit, std::move(value)); }
  bool Signe() const noexcept { return Signe_; }
  void set_Signe(bool value) noexcept { Signe_ = value; }
  // Scaling step, offset and divisor (XML Step, Offset, DivideBy), stored only.
  double CoeffA() const noexcept { return scaling_ ? scaling_->a : 1.0; }
  void set_CoeffA(double value) { SetCoeff(&Scaling::a, 1.0, value); }
  double CoeffB() const noexcept { return scaling_ ? scaling_->b : 0.0; }
  void set_CoeffB(double value) { SetCoeff(&Scaling::b, 0.0, value); }
  double CoeffC() const noexcept { return scaling_ ? scaling_->c : 1.0; }
  void set_CoeffC(double value) { SetCoeff(&Scaling::c, 1.0, value); }
  // Display format of the physical value (XML Format), stored unchanged.
  const std::string& DataFormat() const noexcept { return scaling_ ? scaling_->format : EmptyText(); }
  void set_DataFormat(std::string value) { SetText(&Scaling::format, std::move(value)); }
  bool Ascii() const noexcept { return Ascii_; }
  void set_Ascii(bool value) noexcept { Ascii_ = value; }
  const std::string& Mnemo() const noexcept { return Mnemo_; }
  void set_Mnemo(std::string value) { Mnemo_ = std::move(value); }
  // Comment (XML Comment).
  const std::string& Description() const noexcept { return notes_ ? notes_->comment : EmptyText(); }
  void set_Description(std::string value) { SetText(&Notes::comment, std::move(value)); }
  // Long description (XML Description).
  const std::string& Fiche() const noexcept { return notes_ ? notes_->description : EmptyText(); }
  void set_Fiche(std::string value) { SetText(&Notes::description, std::move(value)); }
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
  // The scaling of a numeric value, and the two free texts. Most data have no comment and many
  // no scaling, so each group is held only once one of its fields differs from its default.
  struct Scaling {
    std::string unit;
    std::string format;
    double a = 1.0;
    double b = 0.0;
    double c = 1.0;
  };
  struct Notes {
    std::string comment;
    std::string description;
  };

  static const std::string& EmptyText() noexcept;
  // Stores a text of the scaling or of the notes, making the group first unless the text is
  // empty (an absent group reads as empty texts).
  void SetText(std::string Scaling::*field, std::string value);
  void SetText(std::string Notes::*field, std::string value);
  void SetCoeff(double Scaling::*field, double byDefault, double value);
  void ResetNumeric();

  std::string dataName_;
  std::string Mnemo_;
  std::int32_t NumberBits_ = 8;
  bool numerique_ = true;
  bool liste_ = false;
  bool Signe_ = false;
  bool Ascii_ = false;
  std::unique_ptr<Scaling> scaling_;
  std::unique_ptr<Notes> notes_;
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
