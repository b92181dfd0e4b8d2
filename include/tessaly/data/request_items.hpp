// PLACEHOLDER until its subsystem lands: only the members the target uses.
#ifndef TESSALY_DATA_REQUEST_ITEMS_HPP_
#define TESSALY_DATA_REQUEST_ITEMS_HPP_

#include <pugixml.hpp>

#include <memory>

#include "tessaly/common/collection.hpp"

namespace tessaly {

class TargetItem;

class RequestItem {
 public:
  void clear() {}
};

class RequestItems : public Collection<RequestItem> {
 public:
  void clear() { ClearItems(); }
  void loadXml(pugi::xml_document&, pugi::xml_node, const std::shared_ptr<TargetItem>&) {}
  void createXMLnode(pugi::xml_document&, pugi::xml_node) const {}
};

}  // namespace tessaly

#endif
