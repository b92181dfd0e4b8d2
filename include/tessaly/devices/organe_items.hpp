// PLACEHOLDER until its subsystem lands: only the members the target uses.
#ifndef TESSALY_DEVICES_ORGANE_ITEMS_HPP_
#define TESSALY_DEVICES_ORGANE_ITEMS_HPP_

#include <pugixml.hpp>

#include <memory>

#include "tessaly/common/collection.hpp"

namespace tessaly {

class TargetItem;

class OrganeItem {
 public:
  void clear() {}
};

class OrganeItems : public Collection<OrganeItem> {
 public:
  void clear() { ClearItems(); }
  void loadXml(pugi::xml_document&, pugi::xml_node, const std::shared_ptr<TargetItem>&) {}
  void createXMLnode(pugi::xml_document&, pugi::xml_node) const {}
};

}  // namespace tessaly

#endif
