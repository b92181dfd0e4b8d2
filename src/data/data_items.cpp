#include "tessaly/data/data_items.hpp"

#include <cstring>
#include <optional>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "data/comment_xml.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kLoadSource = "DataItem.loadXml";

// Stores `value` in `field` of `group`, making the group first unless the value is the field's
// default (an absent group reads as its defaults).
template <class Group, class Value>
void StoreInGroup(std::unique_ptr<Group>& group, Value Group::*field, Value value, bool isDefault) {
  if (!group) {
    if (isDefault) return;
    group = std::make_unique<Group>();
  }
  (*group).*field = std::move(value);
}

std::string Key(std::string_view name) {
  std::string key = "k";
  key += name;
  return key;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// DataItem

void DataItem::set_dataName(std::string value) {
  if (std::shared_ptr<TargetItem> target = parent()) {
    const std::shared_ptr<DataItems>& datas = target->datas();
    if (datas && datas->ItemName(value)) Raise(errc::kModel, "DataItem.dataName", "Duplicate name (" + value + ")");
  }
  dataName_ = std::move(value);
}

void DataItem::clear() {
  parent_.reset();
  if (DataListes_) DataListes_->clear();
  DataListes_.reset();
}

const std::string& DataItem::EmptyText() noexcept {
  static const std::string empty;
  return empty;
}

void DataItem::SetText(std::string Scaling::*field, std::string value) {
  const bool empty = value.empty();
  StoreInGroup(scaling_, field, std::move(value), empty);
}

void DataItem::SetText(std::string Notes::*field, std::string value) {
  const bool empty = value.empty();
  StoreInGroup(notes_, field, std::move(value), empty);
}

void DataItem::SetCoeff(double Scaling::*field, double byDefault, double value) {
  // The same bits as the default (so -0.0 and NaN are kept, not taken for the default).
  StoreInGroup(scaling_, field, value, std::memcmp(&value, &byDefault, sizeof value) == 0);
}

std::shared_ptr<DataItem> DataItem::clone(const std::shared_ptr<TargetItem>& parent) const {
  auto copy = std::make_shared<DataItem>();
  copy->set_parent(parent);
  copy->Ascii_ = Ascii_;
  if (scaling_) copy->scaling_ = std::make_unique<Scaling>(*scaling_);
  copy->set_dataName(dataName_);
  if (notes_) copy->notes_ = std::make_unique<Notes>(*notes_);
  copy->liste_ = liste_;
  copy->Mnemo_ = Mnemo_;
  copy->NumberBits_ = NumberBits_;
  copy->numerique_ = numerique_;
  copy->Signe_ = Signe_;
  if (DataListes_) copy->DataListes_ = DataListes_->clone(copy);
  return copy;
}

void DataItem::createXMLnode(xml::Out parNode) const {
  xml::SetAttr(parNode, "Name", std::string_view(dataName_));
  xml::AppendLf(parNode);

  data::WriteComment(parNode, Description());
  if (!Mnemo_.empty()) {
    xml::AppendText(xml::AppendElement(parNode, "Mnemonic"), Mnemo_);
    xml::AppendLf(parNode);
  }
  if (!Fiche().empty()) {
    xml::AppendCData(xml::AppendElement(parNode, "Description"), Fiche());
    xml::AppendLf(parNode);
  }

  if (numerique_) {
    xml::Out bits = xml::AppendElement(parNode, "Bits");
    if (NumberBits_ != 8) xml::SetAttr(bits, "count", NumberBits_);
    if (Signe_) xml::SetAttr(bits, "signed", std::string_view("1"));
    xml::AppendLf(bits);
    if (liste_) {
      // An enumerated value is written without its scaling.
      xml::Out list = xml::AppendElement(bits, "List");
      if (DataListes_) DataListes_->createXMLnode(list);
    } else {
      xml::Out scaled = xml::AppendElement(bits, "Scaled");
      if (scaling_) {
        const Scaling& scaling = *scaling_;
        if (!scaling.unit.empty()) xml::SetAttr(scaled, "Unit", std::string_view(scaling.unit));
        if (scaling.a != 1.0) xml::SetAttr(scaled, "Step", std::string_view(NumberText(scaling.a)));
        if (scaling.b != 0.0) xml::SetAttr(scaled, "Offset", std::string_view(NumberText(scaling.b)));
        if (scaling.c != 1.0) xml::SetAttr(scaled, "DivideBy", std::string_view(NumberText(scaling.c)));
        if (!scaling.format.empty()) xml::SetAttr(scaled, "Format", std::string_view(scaling.format));
      }
    }
    xml::AppendLf(bits);
  } else {
    xml::Out bytes = xml::AppendElement(parNode, "Bytes");
    // Whole bytes as an integer ("3"), a part byte in its shortest decimal form ("1.5").
    xml::SetAttr(bytes, "count", std::string_view(NumberText(static_cast<double>(NumberBits_) / 8.0)));
    if (Ascii_) xml::SetAttr(bytes, "ascii", std::string_view("1"));
  }
  xml::AppendLf(parNode);
}

void DataItem::ResetNumeric() {
  NumberBits_ = 8;
  numerique_ = true;
  liste_ = false;
  scaling_.reset();
  Signe_ = false;
  Ascii_ = false;
}

void DataItem::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  Err().Clear();
  auto name = xml::Attr(parNode, "Name");
  if (!name) {
    Err().Raise(errc::kMissingName, kLoadSource, "DataItem.loadXml error : Name not defined");
    return;
  }
  // Stored directly: reading never runs the duplicate check of the setter.
  xml::Store(dataName_, *name);

  notes_.reset();
  pugi::xml_node comment, mnemonic, description, bits, bytes;
  const pugi::xml_node remark = xml::FindChildren(parNode, {{"Comment", &comment}, {"Mnemonic", &mnemonic},
                                                            {"Description", &description}, {"Bits", &bits}, {"Bytes", &bytes}});
  set_Description(data::ReadComment(comment, remark));
  Mnemo_ = xml::Text(mnemonic);
  set_Fiche(xml::Text(description));

  ResetNumeric();
  if (bits) {
    numerique_ = true;
    Trap([&] { xml::ReadInt(bits, "count", NumberBits_); });
    if (auto sign = xml::Attr(bits, "signed")) Signe_ = ToBoolOrFalse(*sign);
    pugi::xml_node scaled, list;
    xml::FindChildren(bits, {{"Scaled", &scaled}, {"List", &list}});
    if (scaled) {
      // Each coefficient is the number its text starts with: "0,5" reads as 0.
      if (auto step = xml::Attr(scaled, "Step")) set_CoeffA(LeadingNumber(*step));
      if (auto offset = xml::Attr(scaled, "Offset")) set_CoeffB(LeadingNumber(*offset));
      if (auto divide = xml::Attr(scaled, "DivideBy")) set_CoeffC(LeadingNumber(*divide));
      if (auto unit = xml::Attr(scaled, "Unit")) set_Unite(std::string(*unit));
      if (auto format = xml::Attr(scaled, "Format")) set_DataFormat(std::string(*format));
    }
    if (list) {
      liste_ = true;
      DataListes_ = std::make_shared<DataListeItems>();
      // The list reader starts from a clear error state; an error this item met before stays
      // the pending one.
      std::optional<Error> earlier;
      if (Err().Pending()) earlier = Err().ToError();
      DataListes_->loadXml(odoc, list, weak_from_this().lock());
      if (earlier) Err().Raise(*earlier);
    }
  } else if (bytes) {
    numerique_ = false;
    if (auto count = xml::Attr(bytes, "count"))
      Trap([&] { NumberBits_ = RoundToInt32(LeadingNumber(*count) * 8.0); });
    if (auto ascii = xml::Attr(bytes, "ascii")) Ascii_ = ToBoolOrFalse(*ascii);
  }
}

// ---------------------------------------------------------------------------------------------
// DataItems

std::shared_ptr<DataItem> DataItems::AddData(const std::shared_ptr<DataItem>& vData) {
  // The collection keeps a copy of the key: it is built in a buffer kept between calls.
  thread_local std::string key;
  key.assign(1, 'k');
  key.append(vData->dataName());
  return Append(vData, key);
}

std::shared_ptr<DataItem> DataItems::Add(std::string dataName) {
  auto item = std::make_shared<DataItem>();
  item->set_dataName(std::move(dataName));
  return AddData(item);
}

std::shared_ptr<DataItem> DataItems::AddDataSorted(const std::shared_ptr<DataItem>& vData) {
  const std::string& name = vData->dataName();
  // One pass finds both a name held exactly (refused before any change) and where the new
  // item goes: before the LAST item whose name sorts after its own (comparison by character
  // codes), so the scan deliberately runs to the end.
  std::int32_t pos = 0;
  std::int32_t i = 0;
  for (const auto& item : inner_) {
    ++i;
    const int order = name.compare(item->dataName());
    if (order == 0) Raise(errc::kModel, "DataItems.AddDataSorted", "Duplicate data name '" + name + "'");
    if (order < 0) pos = i;
  }

  const std::string key = Key(name);
  if (pos == 0) {
    inner_.Append(vData, key);
    return vData;
  }
  // A key that collides with another letter case makes both attempts fail; the item is then
  // returned without being added.
  try {
    inner_.InsertBefore(pos, vData, key);
  } catch (const Error&) {
    try {
      inner_.Append(vData, key);
    } catch (const Error&) {
    }
  }
  return vData;
}

void DataItems::rename(const std::shared_ptr<DataItem>& vData, const std::string& newName) {
  std::shared_ptr<DataItem> found = ItemName(newName);
  if (found && found != vData) Raise(errc::kModel, "DataItems.rename", "Duplicate data (" + newName + ")");
  if (vData->dataName() == newName) return;

  std::int32_t pos = 0;
  for (std::int32_t i = 1; i <= inner_.Count(); ++i) {
    if (inner_.Item(i)->dataName() == vData->dataName()) {
      pos = i;
      break;
    }
  }
  std::shared_ptr<DataItem> removed;
  std::string oldKey;
  if (pos != 0) {
    removed = inner_.Item(pos);
    oldKey = inner_.KeyAt(pos);
    inner_.Remove(pos);
  }
  try {
    vData->set_dataName(newName);
  } catch (const Error&) {
    // The name was refused: the collection goes back to what it was.
    if (removed) {
      if (pos <= inner_.Count()) inner_.InsertBefore(pos, removed, oldKey);
      else inner_.Append(removed, oldKey);
    }
    throw;
  }
  AddDataSorted(vData);
}

std::shared_ptr<DataItem> DataItems::ItemName(std::string_view name) const {
  // Looked up once per reference while a document loads: the key is built in a buffer kept
  // between calls instead of a new text each time.
  thread_local std::string key;
  key.assign(1, 'k');
  key.append(name);
  return inner_.Find(key);
}

void DataItems::createXMLnode(xml::Out parNode) const {
  for (const auto& item : inner_) {
    xml::AppendLf(parNode);
    item->createXMLnode(xml::AppendElement(parNode, "Data"));
  }
}

void DataItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<TargetItem>& parent) {
  Err().Clear();
  ReadChildren(*this, parNode, "Data", [&](pugi::xml_node child) {
    auto item = std::make_shared<DataItem>();
    item->set_parent(parent);
    item->loadXml(odoc, child);
    if (Err().Pending()) {
      // Kept with what it read.
      if (auto f = DiagnosticsOf(parent.get()))
        f->ReportDiagnostic(Diagnostic::Action::kRepaired, child, "Data " + item->dataName(), Err().Description());
    }
    Err().Clear();
    if (!Trap([&] { AddData(item); })) {
      // A name read before (in any letter case).
      if (auto f = DiagnosticsOf(parent.get()))
        f->ReportDiagnostic(Diagnostic::Action::kDropped, child, "Data " + item->dataName(), Err().Description());
    }
    Err().Clear();
  });
}

}  // namespace tessaly
