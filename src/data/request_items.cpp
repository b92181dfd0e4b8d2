#include "tessaly/data/request_items.hpp"

#include <optional>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "data/comment_xml.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kLoadSource = "RequestItem.loadXml";

// Runs a nested collection reader (which starts from a clear error state) so that an error this
// request met before it stays the pending one.
template <class Read>
void KeepingPendingError(Read&& read) {
  std::optional<Error> earlier;
  if (Err().Pending()) earlier = Err().ToError();
  read();
  if (earlier) Err().Raise(*earlier);
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// RequestItem

void RequestItem::clear() {
  if (DataPositions_) DataPositions_->clear();
  DataPositions_.reset();
  RequestBytes_.reset();
  ReplyBytes_.reset();
  parent_.reset();
}

void RequestItem::createXMLnode(xml::Out reqNode) const {
  xml::SetAttr(reqNode, "Name", std::string_view(requestName_));
  xml::AppendLf(reqNode);

  if (DossierMaintenabilite_) {
    xml::AppendElement(reqNode, "DossierMaintenabilite");
    xml::AppendLf(reqNode);
  }
  if (ManuelSend_) {
    xml::AppendElement(reqNode, "ManuelSend");
    xml::AppendLf(reqNode);
  }
  if (!AccesTous_ || !AccesUsine_ || !AccesApresVente_ || !AccesEtudes_ || !AccesConstructeur_) {
    xml::Out deny = xml::AppendElement(reqNode, "DenyAccess");
    if (!AccesTous_) xml::AppendElement(deny, "NoSDS");
    if (!AccesUsine_) xml::AppendElement(deny, "Plant");
    if (!AccesApresVente_) xml::AppendElement(deny, "AfterSales");
    if (!AccesEtudes_) xml::AppendElement(deny, "Engineering");
    if (!AccesConstructeur_) xml::AppendElement(deny, "Supplier");
    xml::AppendLf(reqNode);
  }
  data::WriteComment(reqNode, Commentaire_);

  xml::Out sent = xml::AppendElement(reqNode, "Sent");
  xml::AppendLf(sent);
  if (LgVariable_) {
    xml::AppendElement(sent, "VariableLength");
    xml::AppendLf(sent);
  }
  xml::Out sentBytes = xml::AppendElement(sent, "SentBytes");
  if (RequestBytes_ && !RequestBytes_->ToText().empty()) xml::AppendText(sentBytes, RequestBytes_->ToText());
  xml::AppendLf(sent);
  if (DataPositions_) DataPositions_->createXMLnodeType(sent, true);
  xml::AppendLf(reqNode);

  xml::Out received = xml::AppendElement(reqNode, "Received");
  xml::SetAttr(received, "MinBytes", LengthDatas_);
  xml::AppendLf(received);
  if (ShiftBytesCount_ != 0) {
    xml::AppendText(xml::AppendElement(received, "ShiftBytesCount"), IntText(ShiftBytesCount_));
    xml::AppendLf(received);
  }
  if (ReplyBytes_ && ReplyBytes_->HasBytes()) {
    xml::AppendText(xml::AppendElement(received, "ReplyBytes"), ReplyBytes_->ToText());
    xml::AppendLf(received);
  }
  if (DataPositions_) DataPositions_->createXMLnodeType(received, false);
  xml::AppendLf(reqNode);
}

void RequestItem::loadXml(pugi::xml_document& odoc, pugi::xml_node reqNode) {
  Err().Clear();
  auto name = xml::Attr(reqNode, "Name");
  if (!name) {
    Err().Raise(errc::kMissingName, kLoadSource, "RequestItem.loadXml error : Name not defined");
    return;
  }
  xml::Store(requestName_, *name);

  pugi::xml_node comment, dossier, manual, deny, sent, received;
  const pugi::xml_node remark =
      xml::FindChildren(reqNode, {{"Comment", &comment}, {"DossierMaintenabilite", &dossier}, {"ManuelSend", &manual},
                                  {"DenyAccess", &deny}, {"Sent", &sent}, {"Received", &received}});
  Commentaire_ = data::ReadComment(comment, remark);
  DossierMaintenabilite_ = static_cast<bool>(dossier);
  ManuelSend_ = static_cast<bool>(manual);

  AccesTous_ = AccesUsine_ = AccesApresVente_ = AccesEtudes_ = AccesConstructeur_ = true;
  if (deny) {
    pugi::xml_node noSds, plant, afterSales, engineering, supplier;
    xml::FindChildren(deny, {{"NoSDS", &noSds}, {"Plant", &plant}, {"AfterSales", &afterSales},
                             {"Engineering", &engineering}, {"Supplier", &supplier}});
    AccesTous_ = !noSds;
    AccesUsine_ = !plant;
    AccesApresVente_ = !afterSales;
    AccesEtudes_ = !engineering;
    AccesConstructeur_ = !supplier;
  }

  std::shared_ptr<RequestItem> self = weak_from_this().lock();

  if (!RequestBytes_) RequestBytes_ = std::make_shared<ByteString>();
  LgVariable_ = false;
  if (sent) {
    pugi::xml_node variableLength, bytes;
    xml::FindChildren(sent, {{"VariableLength", &variableLength}, {"SentBytes", &bytes}});
    LgVariable_ = static_cast<bool>(variableLength);
    if (bytes) RequestBytes_->FromText(xml::Text(bytes));
    if (!DataPositions_) DataPositions_ = std::make_shared<DataPositionItems>();
    KeepingPendingError([&] { DataPositions_->loadXmlType(odoc, sent, self, true); });
  }

  if (!ReplyBytes_) ReplyBytes_ = std::make_shared<ByteString>();
  ShiftBytesCount_ = 0;
  if (received) {
    Trap([&] { xml::ReadInt(received, "MinBytes", LengthDatas_); });
    pugi::xml_node shift, bytes;
    xml::FindChildren(received, {{"ShiftBytesCount", &shift}, {"ReplyBytes", &bytes}});
    if (shift) Trap([&] { ShiftBytesCount_ = ToInt32(xml::Text(shift)); });
    if (bytes) ReplyBytes_->FromText(xml::Text(bytes));
    if (!DataPositions_) DataPositions_ = std::make_shared<DataPositionItems>();
    KeepingPendingError([&] { DataPositions_->loadXmlType(odoc, received, self, false); });
  }
}

// ---------------------------------------------------------------------------------------------
// RequestItems

std::shared_ptr<RequestItem> RequestItems::AddData(const std::shared_ptr<RequestItem>& vData) {
  // The collection keeps a copy of the key: it is built in a buffer kept between calls.
  thread_local std::string key;
  key.assign(1, 'k');
  key.append(vData->requestName());
  return Append(vData, key);
}

std::shared_ptr<RequestItem> RequestItems::Add(std::string requestName) {
  auto item = std::make_shared<RequestItem>();
  item->set_requestName(std::move(requestName));
  return AddData(item);
}

void RequestItems::rename(const std::shared_ptr<RequestItem>& vData, const std::string& newName) {
  std::shared_ptr<RequestItem> found = ItemName(newName);
  if (found && found != vData) Raise(errc::kModel, "RequestItems.rename", "Duplicate request (" + newName + ")");
  if (vData->requestName() == newName) return;

  for (std::int32_t i = 1; i <= inner_.Count(); ++i) {
    if (inner_.Item(i)->requestName() == vData->requestName()) {
      inner_.Remove(i);
      break;
    }
  }
  vData->set_requestName(newName);
  AddData(vData);
}

std::shared_ptr<RequestItem> RequestItems::ItemName(std::string_view name) const {
  // Looked up once per reference while a document loads: the key is built in a buffer kept
  // between calls instead of a new text each time.
  thread_local std::string key;
  key.assign(1, 'k');
  key.append(name);
  return inner_.Find(key);
}

std::shared_ptr<DataPositionItem> RequestItems::ItemDataPositionName(std::string_view requestName,
                                                                     std::string_view dataName) const {
  std::shared_ptr<RequestItem> request = ItemName(requestName);
  if (!request || !request->DataPositions()) return nullptr;
  for (const auto& position : *request->DataPositions()) {
    // The item is found by its key, which ignores letter case: a position whose name differs
    // from `dataName` in more than letter case cannot lead to it, and is not looked up.
    if (!FoldedEqual(position->dataName(), dataName)) continue;
    std::shared_ptr<DataItem> item = position->data();
    if (item && item->dataName() == dataName) return position;
  }
  return nullptr;
}

void RequestItems::createXMLnode(xml::Out parNode) const {
  for (const auto& item : inner_) {
    xml::AppendLf(parNode);
    item->createXMLnode(xml::AppendElement(parNode, "Request"));
  }
}

void RequestItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode,
                           const std::shared_ptr<TargetItem>& parent) {
  Err().Clear();
  ReadChildren(*this, parNode, "Request", [&](pugi::xml_node child) {
    auto item = std::make_shared<RequestItem>();
    item->set_parent(parent);
    item->loadXml(odoc, child);
    // A request that met an error, or whose name was read before, is dropped.
    if (!Err().Pending()) Trap([&] { AddData(item); });
    if (Err().Pending()) {
      if (auto f = DiagnosticsOf(parent.get()))
        f->ReportDiagnostic(Diagnostic::Action::kDropped, child, "Request " + item->requestName(), Err().Description());
      Err().Clear();
    }
  });
}

}  // namespace tessaly
