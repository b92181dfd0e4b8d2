// DataListeItem and DataListeItems: the value list of an enumerated data item, the pairs of raw
// value and label by which a coded value is shown as text, each with an optional note. The list
// lives in the List element inside the data item's Bits element.
//
// The list holds no keys: items are reached by position or by search. No two items share a
// value, and no two share exactly the same label (labels are compared case-sensitively on
// insertion, although ItemLabel looks labels up without regard to case).
#ifndef TESSALY_DATA_DATA_LISTE_ITEMS_HPP_
#define TESSALY_DATA_DATA_LISTE_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class DataItem;

class DataListeItem {
 public:
  DataListeItem() = default;

  std::int32_t Valeur() const noexcept { return Valeur_; }
  void set_Valeur(std::int32_t value) noexcept { Valeur_ = value; }
  const std::string& libelle() const noexcept { return libelle_; }
  void set_libelle(std::string value) { libelle_ = std::move(value); }
  const std::string& Info() const noexcept { return Info_; }
  void set_Info(std::string value) { Info_ = std::move(value); }

  // The data item whose list holds this entry, or null.
  std::shared_ptr<DataItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<DataItem>& value) { parent_ = value; }

  // Back to value 0, empty label and note, no parent.
  void clear();
  // A new entry with the same value, label and note, whose parent is `parent`.
  std::shared_ptr<DataListeItem> clone(const std::shared_ptr<DataItem>& parent) const;

  // Fills the given Item element: Value, Text, and the note as a CDATA section when not empty.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the given Item element. A missing Text, or a Value that is missing or does not
  // convert, stops the reading and leaves error 1 pending (the fields not read keep their
  // values).
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  std::int32_t Valeur_ = 0;
  std::string libelle_;
  std::string Info_;
  std::weak_ptr<DataItem> parent_;
};

class DataListeItems : public Collection<DataListeItem> {
 public:
  // Checks `vData` against every entry (same value, then exactly the same label: error 1), then
  // appends it. Returns it.
  std::shared_ptr<DataListeItem> AddDataUnSorted(const std::shared_ptr<DataListeItem>& vData);
  // The same checks, then inserts it before the LAST entry whose value is greater than its own
  // (at the end when there is none). Returns it.
  std::shared_ptr<DataListeItem> AddData(const std::shared_ptr<DataListeItem>& vData);
  // A new entry with this value and label (empty note, no parent), added by AddData.
  std::shared_ptr<DataListeItem> Add(std::int32_t Valeur, std::string libelle);

  // The first entry with this value, or null.
  std::shared_ptr<DataListeItem> ItemValue(std::int32_t value) const;
  // The first entry whose label equals `text` without regard to letter case, or null.
  std::shared_ptr<DataListeItem> ItemLabel(std::string_view text) const;
  // The largest value; 0 for an empty list.
  std::int32_t ValueMax() const;

  // Clears every entry and empties the list.
  void clear() { ClearItems(); }
  // Clears and removes the very same entry; an entry not in the list is ignored.
  void Delete(const std::shared_ptr<DataListeItem>& vData) { DeleteItem(vData.get()); }
  // A new list holding a clone (with parent `parent`) of every entry, added by AddData in order.
  std::shared_ptr<DataListeItems> clone(const std::shared_ptr<DataItem>& parent) const;

  // Writes, for each entry, a line feed and an Item element into the List element `parNode`
  // (no line feed after the last one).
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Item child of the List element `parNode` in document order, each with parent
  // `parent`, adding it with AddDataUnSorted. Entries whose reading stopped early are kept with
  // what they read; duplicates are dropped. No error is left pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<DataItem>& parent);

 private:
  void CheckDuplicates(const DataListeItem& vData, const char* source) const;
};

}  // namespace tessaly

#endif  // TESSALY_DATA_DATA_LISTE_ITEMS_HPP_
