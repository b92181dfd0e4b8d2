#include "tessaly/data/data_liste_items.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_items.hpp"

namespace tessaly {
namespace {

constexpr const char* kItemLoadSource = "DataListeItem.loadXml";

// The ECU that a list entry belongs to (through its data item), for reporting.
const TargetItem* TargetOf(const std::shared_ptr<DataItem>& data) {
  if (!data) return nullptr;
  return data->parent().get();
}

std::string EntryDescription(pugi::xml_node node, const std::shared_ptr<DataItem>& data) {
  std::string what = "Item";
  if (auto value = xml::Attr(node, "Value")) what += " " + std::string(*value);
  if (data) what += " in data " + data->dataName();
  return what;
}

// The duplicate refusal of an entry whose value (`value` true) or label is already listed.
[[noreturn]] void RaiseDuplicate(const DataListeItem& vData, bool value, const char* source) {
  const std::string number = IntText(vData.Valeur());
  if (value) Raise(errc::kModel, source, "Duplicate value '" + number + "' with label '" + vData.libelle() + "'");
  Raise(errc::kModel, source, "Duplicate label '" + vData.libelle() + "' with value '" + number + "'");
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// DataListeItem

void DataListeItem::clear() {
  Valeur_ = 0;
  libelle_.clear();
  Info_.clear();
  parent_.reset();
}

std::shared_ptr<DataListeItem> DataListeItem::clone(const std::shared_ptr<DataItem>& parent) const {
  auto copy = std::make_shared<DataListeItem>();
  copy->Info_ = Info_;
  copy->libelle_ = libelle_;
  copy->Valeur_ = Valeur_;
  copy->parent_ = parent;
  return copy;
}

void DataListeItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Value", Valeur_);
  xml::SetAttr(parNode, "Text", std::string_view(libelle_));
  if (!Info_.empty()) xml::AppendCData(parNode, Info_);
}

void DataListeItem::loadXml(pugi::xml_document& /*odoc*/, pugi::xml_node parNode) {
  Err().Clear();
  // A failure here is recorded as error 1 carrying the failure's own text, and ends the reading
  // of the entry: the fields not read yet keep their values.
  auto text = xml::Attr(parNode, "Text");
  if (!text) {
    Err().Raise(errc::kModel, kItemLoadSource, PlatformDescription(errc::kObjectNotSet));
    return;
  }
  xml::Store(libelle_, *text);

  auto value = xml::Attr(parNode, "Value");
  if (!value) {
    Err().Raise(errc::kModel, kItemLoadSource, PlatformDescription(errc::kObjectNotSet));
    return;
  }
  try {
    Valeur_ = ToInt32(*value);
  } catch (const Error& failure) {
    Err().Raise(errc::kModel, kItemLoadSource, failure.Description());
    return;
  }

  Info_.assign(TrimSpaces(xml::Text(parNode)));
}

// ---------------------------------------------------------------------------------------------
// DataListeItems

void DataListeItems::CheckDuplicates(const DataListeItem& vData, const char* source) const {
  for (const auto& item : inner_) {
    if (item->Valeur() == vData.Valeur()) RaiseDuplicate(vData, /*value=*/true, source);
    if (item->libelle() == vData.libelle()) RaiseDuplicate(vData, /*value=*/false, source);
  }
}

std::shared_ptr<DataListeItem> DataListeItems::AddDataUnSorted(const std::shared_ptr<DataListeItem>& vData) {
  CheckDuplicates(*vData, "DataListeItems.AddDataUnSorted");
  return Append(vData);
}

std::shared_ptr<DataListeItem> DataListeItems::AddData(const std::shared_ptr<DataListeItem>& vData) {
  CheckDuplicates(*vData, "DataListeItems.AddData");
  // The new entry goes before the LAST entry whose value is greater than its own: the scan
  // deliberately runs to the end rather than stopping at the first greater value, so only a
  // list built from ascending insertions stays sorted.
  std::int32_t pos = 0;
  for (std::int32_t i = 1; i <= inner_.Count(); ++i)
    if (vData->Valeur() < inner_.Item(i)->Valeur()) pos = i;
  if (pos == 0) return Append(vData);
  try {
    inner_.InsertBefore(pos, vData);
  } catch (const Error&) {
    inner_.Append(vData);
  }
  return vData;
}

std::shared_ptr<DataListeItem> DataListeItems::Add(std::int32_t Valeur, std::string libelle) {
  auto item = std::make_shared<DataListeItem>();
  item->set_Valeur(Valeur);
  item->set_libelle(std::move(libelle));
  return AddData(item);
}

std::shared_ptr<DataListeItem> DataListeItems::ItemValue(std::int32_t value) const {
  return FindFirst([&](const DataListeItem& item) { return item.Valeur() == value; });
}

std::shared_ptr<DataListeItem> DataListeItems::ItemLabel(std::string_view text) const {
  const std::string wanted = AsciiUpper(text);
  return FindFirst([&](const DataListeItem& item) { return AsciiUpper(item.libelle()) == wanted; });
}

std::int32_t DataListeItems::ValueMax() const {
  if (inner_.Count() == 0) return 0;
  std::int32_t max = inner_.Item(1)->Valeur();
  for (const auto& item : inner_)
    if (item->Valeur() > max) max = item->Valeur();
  return max;
}

std::shared_ptr<DataListeItems> DataListeItems::clone(const std::shared_ptr<DataItem>& parent) const {
  auto copy = std::make_shared<DataListeItems>();
  for (const auto& item : inner_) copy->AddData(item->clone(parent));
  return copy;
}

void DataListeItems::createXMLnode(xml::Out parNode) const {
  for (const auto& item : inner_) {
    xml::AppendLf(parNode);
    item->createXMLnode(xml::AppendElement(parNode, "Item"));
  }
}

void DataListeItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode,
                             const std::shared_ptr<DataItem>& parent) {
  Err().Clear();
  const TargetItem* target = TargetOf(parent);
  // The duplicate refusal of AddDataUnSorted: a short list is scanned, as AddDataUnSorted does;
  // a longer one gets the position of the first entry of each value and of each label (views of
  // the held labels), so that each check takes constant time however long the list. Either way
  // the first entry that shares the value or the label decides which of the two is reported,
  // the value when it shares both.
  constexpr std::int32_t kScanned = 8;
  std::unordered_map<std::int32_t, std::size_t> valueAt;
  std::unordered_map<std::string_view, std::size_t> labelAt;
  auto index = [&](const DataListeItem& entry, std::size_t position) {
    valueAt.emplace(entry.Valeur(), position);
    labelAt.emplace(entry.libelle(), position);
  };
  auto add = [&](const std::shared_ptr<DataListeItem>& entry) {
    if (Count() < kScanned) {
      CheckDuplicates(*entry, "DataListeItems.AddDataUnSorted");
    } else {
      if (valueAt.empty()) {
        std::size_t position = 0;
        for (const auto& held : inner_) index(*held, position++);
      }
      auto v = valueAt.find(entry->Valeur());
      auto l = labelAt.find(entry->libelle());
      if (v != valueAt.end() || l != labelAt.end()) {
        bool byValue = v != valueAt.end() && (l == labelAt.end() || v->second <= l->second);
        RaiseDuplicate(*entry, byValue, "DataListeItems.AddDataUnSorted");
      }
    }
    Append(entry);
    if (!valueAt.empty()) index(*entry, static_cast<std::size_t>(Count() - 1));
  };
  ReadChildren(*this, parNode, "Item", [&](pugi::xml_node child) {
    auto item = std::make_shared<DataListeItem>();
    item->set_parent(parent);
    item->loadXml(odoc, child);
    if (Err().Pending()) {
      // Kept with the fields it could read, unless that makes it a duplicate.
      if (auto f = DiagnosticsOf(target))
        f->ReportDiagnostic(Diagnostic::Action::kRepaired, child, EntryDescription(child, parent),
                            Err().Description());
    }
    Err().Clear();
    if (!Trap([&] { add(item); })) {
      if (auto f = DiagnosticsOf(target))
        f->ReportDiagnostic(Diagnostic::Action::kDropped, child, EntryDescription(child, parent),
                            Err().Description());
    }
    Err().Clear();
  });
}

}  // namespace tessaly
