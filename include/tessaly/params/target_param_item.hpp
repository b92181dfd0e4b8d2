// PLACEHOLDER until the communication-parameters work lands: only the members the target uses.
#ifndef TESSALY_PARAMS_TARGET_PARAM_ITEM_HPP_
#define TESSALY_PARAMS_TARGET_PARAM_ITEM_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

namespace tessaly {

class TargetItem;

// The output slot of isDefaultValue: an integer, a boolean or a text.
using DefaultValue = std::variant<std::monostate, std::int32_t, bool, std::string>;

class TargetParamItem {
 public:
  std::shared_ptr<TargetItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<TargetItem>& value) { parent_ = value; }
  void clear() { parent_.reset(); }

  std::int32_t ToolAddress() { CanXId_ = ToolAddress_; return 0; }
  void set_ToolAddress(std::int32_t value) { ToolAddress_ = value; }
  std::int32_t CanXId() const { return CanXId_; }
  bool LittleEndian() const { return false; }
  bool isDefaultValue(std::int32_t index, DefaultValue& defaultValue) const {
    (void)defaultValue;
    return index != 16 || ToolAddress_ == 241;
  }
  bool isCan(pugi::xml_node, bool&, std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&) { return false; }
  void loadXml(pugi::xml_node) {}
  void createXMLnode(pugi::xml_document&, pugi::xml_node) {}

 private:
  std::weak_ptr<TargetItem> parent_;
  std::int32_t ToolAddress_ = 241;
  std::int32_t CanXId_ = -1;
};

}  // namespace tessaly

#endif  // TESSALY_PARAMS_TARGET_PARAM_ITEM_HPP_
