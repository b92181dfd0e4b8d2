// PLACEHOLDER until its subsystem lands: only the members the target uses.
#ifndef TESSALY_SCREENS_CATEGORY_ITEMS_HPP_
#define TESSALY_SCREENS_CATEGORY_ITEMS_HPP_

#include <pugixml.hpp>

#include <memory>

#include "tessaly/common/collection.hpp"

namespace tessaly {

class TargetItem;

class CategoryItem {
 public:
  void clear() {}
};

class CategoryItems : public Collection<CategoryItem> {
 public:
  void clear() { ClearItems(); }
  void loadXml(pugi::xml_document&, pugi::xml_node, const std::shared_ptr<TargetItem>&) {}
  void createXMLnode(pugi::xml_document&, pugi::xml_node) const {}
};

}  // namespace tessaly

#endif
