// DataPositionItem and DataPositionItems: where one data item sits inside one request (start
// byte, bit offset, byte order), and whether it is a parameter carried in the sent bytes or a
// value read from the reply. A position names its data item; the item itself is looked up by
// that name on each access.
//
// DataPositionItems holds the positions of one request, without keys, with at most one
// position per data name.
#ifndef TESSALY_DATA_DATA_POSITION_ITEMS_HPP_
#define TESSALY_DATA_DATA_POSITION_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class DataItem;
class RequestItem;
class TargetItem;

class DataPositionItem {
 public:
  DataPositionItem() = default;

  // Name of the placed data item.
  const std::string& dataName() const noexcept { return dataName_; }
  void set_dataName(std::string value) { dataName_ = std::move(value); }
  // The byte the data starts in, counted from 1 (XML FirstByte).
  std::int32_t StartOctet() const noexcept { return StartOctet_; }
  void set_StartOctet(std::int32_t value) noexcept { StartOctet_ = value; }
  // Bit offset within the start byte (XML BitOffset).
  std::int32_t StartBit() const noexcept { return StartBit_; }
  void set_StartBit(std::int32_t value) noexcept { StartBit_ = value; }
  bool LittleEndian() const noexcept { return LittleEndian_; }
  void set_LittleEndian(bool value) noexcept { LittleEndian_ = value; }
  // true: a parameter in the sent bytes; false: read from the reply.
  bool param() const noexcept { return param_; }
  void set_param(bool value) noexcept { param_ = value; }
  // Marked as a reference (XML Ref).
  bool reference() const noexcept { return reference_; }
  void set_reference(bool value) noexcept { reference_ = value; }

  // The owning request, or null.
  std::shared_ptr<RequestItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<RequestItem>& value) { parent_ = value; }

  // The data item named dataName in the ECU of the parent request (letter case ignored), or
  // null. Assigning stores only the item's name.
  std::shared_ptr<DataItem> data() const;
  void set_data(const std::shared_ptr<DataItem>& value);

  // Drops the parent.
  void clear() { parent_.reset(); }

  // Fills the given DataItem element. Endian is written only when the byte order differs from
  // the ECU's default.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the given DataItem element. A missing Name, a name the ECU's data do not hold, and an
  // empty name stop the reading with error 1 pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  // The ECU of the parent request, or null.
  std::shared_ptr<TargetItem> Target() const;
  // The ECU's default byte order (big-endian without an ECU).
  bool DefaultLittleEndian() const;

  std::string dataName_;
  std::int32_t StartOctet_ = 1;
  std::int32_t StartBit_ = 0;
  bool LittleEndian_ = false;
  bool param_ = false;
  bool reference_ = false;
  std::weak_ptr<RequestItem> parent_;
};

class DataPositionItems : public Collection<DataPositionItem> {
 public:
  // Refuses a data name already placed (error 1, "Duplicate Data, a data can be used only one
  // time in the same request"), else appends `vData` (no key). Returns it.
  std::shared_ptr<DataPositionItem> AddData(const std::shared_ptr<DataPositionItem>& vData);
  // A new position with this data name, added by AddData.
  std::shared_ptr<DataPositionItem> Add(std::string dataName);
  // The first position whose data name equals `dataName` exactly, or null.
  std::shared_ptr<DataPositionItem> ItemName(std::string_view dataName) const;

  // Clears every position and empties the collection.
  void clear() { ClearItems(); }
  // Clears and removes the very same position; a position not held is ignored.
  void Delete(const std::shared_ptr<DataPositionItem>& vData) { DeleteItem(vData.get()); }

  // Writes every position as a DataItem element followed by a line feed; parameters carry
  // Param="1".
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Writes only the positions whose param equals `param`, without the Param attribute (the form
  // requests use: parameters in Sent, reply data in Received).
  void createXMLnodeType(pugi::xml_document&, pugi::xml_node parNode, bool param) const {
    createXMLnodeType(xml::Out(parNode), param);
  }
  void createXMLnodeType(xml::Out parNode, bool param) const;
  // Reads every DataItem child of `parNode`, each with parent `parent`. Positions that fail to
  // read, and repeats of a data name, are dropped; no error is left pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<RequestItem>& parent);
  // The same, giving every position `param` before it reads itself.
  void loadXmlType(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<RequestItem>& parent,
                   bool param);

 private:
  void Read(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<RequestItem>& parent,
            const bool* param);
};

}  // namespace tessaly

#endif  // TESSALY_DATA_DATA_POSITION_ITEMS_HPP_
