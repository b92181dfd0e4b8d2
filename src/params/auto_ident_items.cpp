#include "tessaly/params/auto_ident_items.hpp"

#include <optional>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {

bool AutoIdentItem::SameRecord(const AutoIdentItem& other) const {
  return DiagNumber_ == other.DiagNumber_ && SupplierCode_ == other.SupplierCode_ && Soft_ == other.Soft_ &&
         Version_ == other.Version_;
}

void AutoIdentItem::createXMLnode(xml::Out element) const {
  xml::SetAttr(element, "DiagVersion", DiagNumber_);
  xml::SetAttr(element, "Supplier", SupplierCode_);
  xml::SetAttr(element, "Soft", Soft_);
  xml::SetAttr(element, "Version", Version_);
}

void AutoIdentItem::loadXml(pugi::xml_document&, pugi::xml_node element) {
  // All four attributes are mandatory; each read goes on after a failed one, and the last
  // failure is what the collection sees.
  Err().Clear();
  Trap([&] { DiagNumber_ = ToInt32(xml::Required(element, "DiagVersion")); });
  Trap([&] { SupplierCode_ = std::string(xml::Required(element, "Supplier")); });
  Trap([&] { Soft_ = std::string(xml::Required(element, "Soft")); });
  Trap([&] { Version_ = std::string(xml::Required(element, "Version")); });
}

std::shared_ptr<AutoIdentItem> AutoIdentItems::Add(std::int32_t DiagNumber, std::string SupplierCode,
                                                   std::string Soft, std::string Version,
                                                   const std::shared_ptr<TargetItem>& parent, std::string_view sKey) {
  auto item = std::make_shared<AutoIdentItem>();
  item->set_DiagNumber(DiagNumber);
  item->set_SupplierCode(std::move(SupplierCode));
  item->set_Soft(std::move(Soft));
  item->set_Version(std::move(Version));
  item->set_parent(parent);
  return Append(item, sKey);
}

std::shared_ptr<AutoIdentItem> AutoIdentItems::AddData(const std::shared_ptr<AutoIdentItem>& item,
                                                       std::string_view sKey) {
  return Append(item, sKey);
}

std::int32_t AutoIdentItems::FindItem(const std::shared_ptr<AutoIdentItem>& item) const {
  std::int32_t position = 0;
  for (const auto& stored : inner_) {
    ++position;
    // Comparing against a missing record is the platform's error for a reference that is not
    // set; an empty collection compares nothing.
    if (!item) RaisePlatform(errc::kObjectNotSet);
    if (stored->SameRecord(*item)) return position;
  }
  return 0;
}

std::shared_ptr<AutoIdentItem> AutoIdentItems::FindItemObject(const std::shared_ptr<AutoIdentItem>& item) const {
  std::int32_t position = FindItem(item);
  return position == 0 ? nullptr : inner_.Item(position);
}

void AutoIdentItems::Delete(const std::shared_ptr<AutoIdentItem>& item) {
  std::int32_t position = FindItem(item);
  if (position == 0) return;
  std::shared_ptr<AutoIdentItem> stored = inner_.Item(position);
  stored->clear();
  inner_.Remove(position);
}

void AutoIdentItems::createXMLnode(xml::Out parNode) const {
  for (const auto& item : inner_) item->createXMLnode(xml::AppendElement(parNode, "AutoIdent"));
}

void AutoIdentItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode,
                             const std::shared_ptr<TargetItem>& parent) {
  Err().Clear();
  // Each record starts from a clear error state, so one damaged record never drops a later
  // one; the error of the last dropped record is put back at the end for the caller.
  std::optional<Error> dropped;
  std::int32_t position = 0;
  ReadChildren(*this, parNode, "AutoIdent", [&](pugi::xml_node child) {
    ++position;
    auto item = std::make_shared<AutoIdentItem>();
    item->set_parent(parent);
    item->loadXml(odoc, child);
    if (Err().Pending()) {
      dropped = Err().ToError();
      if (auto facade = DiagnosticsOf(parent.get()))
        facade->ReportDiagnostic(Diagnostic::Action::kDropped, child,
                                 "AutoIdent " + IntText(position) + " in AutoIdents of target " + parent->name(),
                                 Err().Description());
      return;
    }
    AddData(item);
  });
  if (dropped) Err().Raise(*dropped);
}

}  // namespace tessaly
