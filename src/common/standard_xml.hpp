// The standard XML forms of a collection, shared by the collections that follow them.
#ifndef TESSALY_SRC_COMMON_STANDARD_XML_HPP_
#define TESSALY_SRC_COMMON_STANDARD_XML_HPP_

#include <pugixml.hpp>

#include <cstddef>
#include <memory>

#include "common/xml_util.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly {

// Writes, for each item in order, a line feed and an `element` filled by the item; then one
// more line feed (so an empty collection writes a single line feed).
template <class Items>
void WriteStandardItems(const Items& items, xml::Out parNode, const char* element) {
  for (const auto& item : items) {
    xml::AppendLf(parNode);
    item->createXMLnode(xml::AppendElement(parNode, element));
  }
  xml::AppendLf(parNode);
}

// Calls `read(child)` for every child element of `parNode` named `element`, in document order.
template <class Read>
void ForEachChild(pugi::xml_node parNode, const char* element, Read&& read) {
  for (pugi::xml_node child = parNode.child(element); child; child = child.next_sibling(element))
    if (child.type() == pugi::node_element) read(child);
}

// The number of child elements of `parNode` named `element`.
inline std::size_t CountChildren(pugi::xml_node parNode, const char* element) {
  std::size_t count = 0;
  ForEachChild(parNode, element, [&count](pugi::xml_node) { ++count; });
  return count;
}

// Reads the standard form: for each child `element`, a new item (made by `make`) reads itself
// with the error state cleared first, and is added with `add` when no error is pending after
// its reading. The last error stays pending for the caller.
template <class Make, class Add>
void ReadStandardItems(pugi::xml_document& odoc, pugi::xml_node parNode, const char* element, Make&& make, Add&& add) {
  ForEachChild(parNode, element, [&](pugi::xml_node child) {
    auto item = make();
    Err().Clear();
    Trap([&] { item->loadXml(odoc, child); });
    if (!Err().Pending()) Trap([&] { add(item); });
  });
}

}  // namespace tessaly

#endif  // TESSALY_SRC_COMMON_STANDARD_XML_HPP_
