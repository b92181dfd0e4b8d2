#include "tessaly/facade/function_item.hpp"

#include <limits>

#include "common/standard_xml.hpp"
#include "common/xml_util.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly {

void WriteCanId(xml::Out parent, std::int32_t id) {
  xml::Out can = xml::AppendElement(parent, "CANId");
  if (id >= 0) {
    xml::SetAttr(can, "Value", id);
  } else {
    xml::SetAttr(can, "Value", static_cast<std::int32_t>(static_cast<std::uint32_t>(id) & 0x1FFFFFFFu));
    xml::SetAttr(can, "Extended", std::string_view("1"));
  }
}

bool ReadCanId(pugi::xml_node node, const char* container, std::int32_t& id) {
  pugi::xml_node can = xml::Path(node, std::string(container) + "/CANId");
  std::int32_t value = 0;
  if (!xml::ReadInt(can, "Value", value)) return false;
  auto extended = xml::Attr(can, "Extended");
  // Adding 0x80000000 as a signed 32-bit sum sets bit 31 of any non-negative value; the sum
  // overflows for a negative one, which then stays as read.
  if (extended && ToBoolOrFalse(*extended) && value >= 0) value += std::numeric_limits<std::int32_t>::min();
  id = value;
  return true;
}

namespace {

void WriteIdContainer(xml::Out element, const char* container, std::int32_t id) {
  xml::AppendLf(element);
  xml::Out node = xml::AppendElement(element, container);
  xml::AppendLf(node);
  WriteCanId(node, id);
  xml::AppendLf(node);
}

}  // namespace

void FunctionItem::createXMLnode(xml::Out element) const {
  xml::SetAttr(element, "Name", functionName_);
  xml::SetAttr(element, "Address", Address_);
  if (CanXId_ != kNoCanId) WriteIdContainer(element, "SendId", CanXId_);
  if (CanRId_ != kNoCanId) {
    WriteIdContainer(element, "ReceiveId", CanRId_);
    xml::AppendLf(element);
  }
}

void FunctionItem::loadXml(pugi::xml_document&, pugi::xml_node element) {
  // The row reports a missing name or address and clears the report at once, so the row is
  // always kept; an identifier that does not convert leaves the identifier at -1 the same way.
  Err().Clear();
  if (!xml::ReadText(element, "Name", functionName_)) return;
  if (!Trap([&] { Address_ = ToInt32(xml::Required(element, "Address")); })) {
    Err().Clear();
    return;
  }
  Trap([&] { ReadCanId(element, "SendId", CanXId_); });
  Trap([&] { ReadCanId(element, "ReceiveId", CanRId_); });
  Err().Clear();
}

std::shared_ptr<FunctionItem> FunctionItems::AddData(const std::shared_ptr<FunctionItem>& item, std::string_view sKey) {
  return Append(item, sKey);
}

std::shared_ptr<FunctionItem> FunctionItems::Add(std::int32_t Address, std::string functionName, std::string_view sKey) {
  auto item = std::make_shared<FunctionItem>();
  item->set_Address(Address);
  item->set_functionName(std::move(functionName));
  return Append(item, sKey);
}

std::shared_ptr<FunctionItem> FunctionItems::ItemAddress(std::int32_t functionAddress) const {
  return FindFirst([&](const FunctionItem& f) { return f.Address() == functionAddress; });
}

std::shared_ptr<FunctionItem> FunctionItems::ItemName(std::string_view name) const {
  return FindFirst([&](const FunctionItem& f) { return f.functionName() == name; });
}

void FunctionItems::createXMLnode(xml::Out parNode) const {
  WriteStandardItems(*this, parNode, "Function");
}

void FunctionItems::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  Err().Clear();
  ReadStandardItems(odoc, parNode, "Function", [] { return std::make_shared<FunctionItem>(); },
                    [&](const auto& item) { AddData(item); });
}

}  // namespace tessaly
