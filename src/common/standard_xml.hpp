// The standard XML forms of a collection, shared by the collections that follow them.
#ifndef TESSALY_SRC_COMMON_STANDARD_XML_HPP_
#define TESSALY_SRC_COMMON_STANDARD_XML_HPP_

#include <pugixml.hpp>

#include <cstddef>
#include <memory>

#include "common/section_release.hpp"
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

// Reads every child element of `parNode` named `element` into `items`, in document order,
// through `read(child)`, which adds what it keeps. The collection is sized for the children
// before reading when they are few: their nodes, once counted, are still in the processor's
// caches when they are read. A longer list grows as it is read instead (a second walk over a
// large section would wait for memory at every node) and gives back its spare room at the end,
// so that a loaded collection holds no more room than its items either way. Each child is
// handed to SectionRelease::ChildRead once read.
template <class Items, class Read>
void ReadChildren(Items& items, pugi::xml_node parNode, const char* element, Read&& read) {
  constexpr std::size_t kCountedAhead = 256;
  const pugi::xml_node first = parNode.child(element);
  if (!first) return;
  std::size_t count = 0;
  for (pugi::xml_node child = first; child && count < kCountedAhead; child = child.next_sibling(element))
    count += child.type() == pugi::node_element;
  items.Reserve(count);
  for (pugi::xml_node child = first; child;) {
    const pugi::xml_node next = child.next_sibling(element);
    if (child.type() == pugi::node_element) read(child);
    SectionRelease::ChildRead(parNode, child);
    child = next;
  }
  items.ShrinkToFit();
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
