// The ECU functions table: which function of the vehicle an ECU fills, the ECU address that
// answers for it, and for CAN ECUs the identifiers of the requests sent to it and of its
// replies. The host supplies the table; the target looks its function up here.
#ifndef TESSALY_FACADE_FUNCTION_ITEM_HPP_
#define TESSALY_FACADE_FUNCTION_ITEM_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

// A CAN identifier is a signed 32-bit integer: -1 means none, a non-negative value a standard
// identifier, a value with bit 31 set an extended identifier whose number is its low 29 bits.
inline constexpr std::int32_t kNoCanId = -1;

class FunctionItem {
 public:
  std::int32_t Address() const { return Address_; }
  void set_Address(std::int32_t value) { Address_ = value; }
  const std::string& functionName() const { return functionName_; }
  void set_functionName(std::string value) { functionName_ = std::move(value); }
  std::int32_t CanXId() const { return CanXId_; }
  void set_CanXId(std::int32_t value) { CanXId_ = value; }
  std::int32_t CanRId() const { return CanRId_; }
  void set_CanRId(std::int32_t value) { CanRId_ = value; }

  void clear() {}
  // Fills the given Function element: Name, Address, then SendId and ReceiveId when set.
  void createXMLnode(pugi::xml_document&, pugi::xml_node element) const { createXMLnode(xml::Out(element)); }
  void createXMLnode(xml::Out element) const;
  // Reads a Function element. A missing Name or Address ends the reading; the row keeps what
  // it read and nothing is reported.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node element);

 private:
  std::int32_t Address_ = 0;
  std::string functionName_;
  std::int32_t CanXId_ = kNoCanId;
  std::int32_t CanRId_ = kNoCanId;
};

class FunctionItems : public Collection<FunctionItem> {
 public:
  // Adds an existing row, under `sKey` when it is not empty.
  std::shared_ptr<FunctionItem> AddData(const std::shared_ptr<FunctionItem>& item, std::string_view sKey = {});
  // Creates a row with that address and name (no CAN identifiers) and adds it.
  std::shared_ptr<FunctionItem> Add(std::int32_t Address, std::string functionName, std::string_view sKey = {});
  // The first row with that address, or nullptr.
  std::shared_ptr<FunctionItem> ItemAddress(std::int32_t functionAddress) const;
  // The first row with exactly that name, or nullptr.
  std::shared_ptr<FunctionItem> ItemName(std::string_view name) const;
  // Writes LF + Function per row, then one more LF.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Function child of `parNode`, in document order.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);
};

// Writes a CANId element into `parent` for identifier `id` (Value, and Extended="1" when bit 31
// is set).
void WriteCanId(xml::Out parent, std::int32_t id);
// Reads `container`/CANId: Value, plus 0x80000000 when Extended reads as true. Returns false and
// leaves `id` unchanged when there is no readable Value; may throw the conversion's error.
bool ReadCanId(pugi::xml_node node, const char* container, std::int32_t& id);

}  // namespace tessaly

#endif  // TESSALY_FACADE_FUNCTION_ITEM_HPP_
