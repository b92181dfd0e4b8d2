// RequestItem and RequestItems: the diagnostic exchanges of an ECU. A request holds the bytes
// sent and the reply bytes expected, which data items are carried as parameters in the sent
// bytes and which are read from the reply (DataPositions), and who may use it.
//
// RequestItems holds all requests of one ECU, keyed by "k" followed by the name, so look-ups by
// name ignore letter case.
#ifndef TESSALY_DATA_REQUEST_ITEMS_HPP_
#define TESSALY_DATA_REQUEST_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"
#include "tessaly/data/byte_string.hpp"
#include "tessaly/data/data_position_items.hpp"

namespace tessaly {

class TargetItem;

class RequestItem : public std::enable_shared_from_this<RequestItem> {
 public:
  RequestItem() = default;

  // The name, unique within the ECU (use RequestItems::rename to rename a held request).
  const std::string& requestName() const noexcept { return requestName_; }
  void set_requestName(std::string value) { requestName_ = std::move(value); }
  // The bytes sent and the reply bytes expected; null until read or assigned.
  const std::shared_ptr<ByteString>& RequestBytes() const noexcept { return RequestBytes_; }
  void set_RequestBytes(std::shared_ptr<ByteString> value) { RequestBytes_ = std::move(value); }
  const std::shared_ptr<ByteString>& ReplyBytes() const noexcept { return ReplyBytes_; }
  void set_ReplyBytes(std::shared_ptr<ByteString> value) { ReplyBytes_ = std::move(value); }
  // Minimum length of a valid reply, in bytes (XML MinBytes).
  std::int32_t LengthDatas() const noexcept { return LengthDatas_; }
  void set_LengthDatas(std::int32_t value) noexcept { LengthDatas_ = value; }
  // Number of bytes by which the reply is shifted.
  std::int32_t ShiftBytesCount() const noexcept { return ShiftBytesCount_; }
  void set_ShiftBytesCount(std::int32_t value) noexcept { ShiftBytesCount_ = value; }
  // Sent only on explicit demand.
  bool ManuelSend() const noexcept { return ManuelSend_; }
  void set_ManuelSend(bool value) noexcept { ManuelSend_ = value; }
  // The sent bytes have a variable length (XML VariableLength).
  bool LgVariable() const noexcept { return LgVariable_; }
  void set_LgVariable(bool value) noexcept { LgVariable_ = value; }
  // Access rights; each false one is written as a child of DenyAccess: NoSDS, Plant,
  // AfterSales, Engineering, Supplier.
  bool AccesTous() const noexcept { return AccesTous_; }
  void set_AccesTous(bool value) noexcept { AccesTous_ = value; }
  bool AccesUsine() const noexcept { return AccesUsine_; }
  void set_AccesUsine(bool value) noexcept { AccesUsine_ = value; }
  bool AccesApresVente() const noexcept { return AccesApresVente_; }
  void set_AccesApresVente(bool value) noexcept { AccesApresVente_ = value; }
  bool AccesEtudes() const noexcept { return AccesEtudes_; }
  void set_AccesEtudes(bool value) noexcept { AccesEtudes_ = value; }
  bool AccesConstructeur() const noexcept { return AccesConstructeur_; }
  void set_AccesConstructeur(bool value) noexcept { AccesConstructeur_ = value; }
  // Part of the maintainability file.
  bool DossierMaintenabilite() const noexcept { return DossierMaintenabilite_; }
  void set_DossierMaintenabilite(bool value) noexcept { DossierMaintenabilite_ = value; }
  const std::string& Commentaire() const noexcept { return Commentaire_; }
  void set_Commentaire(std::string value) { Commentaire_ = std::move(value); }
  // The placements of data in the sent and reply bytes; null until read or assigned.
  const std::shared_ptr<DataPositionItems>& DataPositions() const noexcept { return DataPositions_; }
  void set_DataPositions(std::shared_ptr<DataPositionItems> value) { DataPositions_ = std::move(value); }

  // The owning ECU, or null.
  std::shared_ptr<TargetItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<TargetItem>& value) { parent_ = value; }

  // Clears and drops the positions, drops both byte strings and the parent.
  void clear();

  // Fills the given Request element.
  void createXMLnode(pugi::xml_document&, pugi::xml_node reqNode) const { createXMLnode(xml::Out(reqNode)); }
  void createXMLnode(xml::Out reqNode) const;
  // Reads the given Request element. A missing Name leaves error 100 pending and reads nothing
  // more. Positions are resolved against the data of the parent ECU.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node reqNode);

 private:
  std::string requestName_;
  std::shared_ptr<ByteString> RequestBytes_;
  std::shared_ptr<ByteString> ReplyBytes_;
  std::int32_t LengthDatas_ = 1;
  std::int32_t ShiftBytesCount_ = 0;
  bool ManuelSend_ = false;
  bool LgVariable_ = false;
  bool AccesTous_ = true;
  bool AccesUsine_ = true;
  bool AccesApresVente_ = true;
  bool AccesEtudes_ = true;
  bool AccesConstructeur_ = true;
  bool DossierMaintenabilite_ = false;
  std::string Commentaire_;
  std::shared_ptr<DataPositionItems> DataPositions_;
  std::weak_ptr<TargetItem> parent_;
};

class RequestItems : public Collection<RequestItem> {
 public:
  // Appends `vData` under "k" + its name; a name already held (in any letter case) is error 457.
  std::shared_ptr<RequestItem> AddData(const std::shared_ptr<RequestItem>& vData);
  // A new request with this name (no parent), added by AddData.
  std::shared_ptr<RequestItem> Add(std::string requestName);
  // Renames `vData` and moves it to the end. Refuses a name held by another request (error 1,
  // "Duplicate request (" + newName + ")"); its own exact name does nothing.
  void rename(const std::shared_ptr<RequestItem>& vData, const std::string& newName);

  // The request keyed "k" + name (letter case ignored), or null.
  std::shared_ptr<RequestItem> ItemName(std::string_view name) const;
  // In the request named `requestName`, the first position whose data item exists and is named
  // exactly `dataName`; null otherwise.
  std::shared_ptr<DataPositionItem> ItemDataPositionName(std::string_view requestName, std::string_view dataName) const;

  // Clears every request and empties the collection.
  void clear() { ClearItems(); }
  // Clears and removes the very same request; a request not held is ignored.
  void Delete(const std::shared_ptr<RequestItem>& vData) { DeleteItem(vData.get()); }

  // Writes, for each request, a line feed and a Request element into `parNode` (no line feed
  // after the last one).
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Request child of `parNode` in document order, each with parent `parent`. A
  // request that leaves an error, or repeats an earlier name, is dropped; errors are cleared,
  // so none is left pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<TargetItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_DATA_REQUEST_ITEMS_HPP_
