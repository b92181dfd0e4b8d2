// Small navigation and building helpers over the pugixml DOM, used by every reader and writer.
// Names are matched as written (qualified names such as "tsl:Target"); namespace declarations
// are plain attributes and never change which element is found.
#ifndef TESSALY_SRC_COMMON_XML_UTIL_HPP_
#define TESSALY_SRC_COMMON_XML_UTIL_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "tessaly/common/xml_out.hpp"

namespace tessaly::xml {

// The first child element named `name`, or an empty node.
pugi::xml_node Child(pugi::xml_node node, const char* name);

// The first element reached from `node` by the '/'-separated element path ("SendId/CANId"),
// in document order, as an XPath location path would select it; or an empty node.
pugi::xml_node Path(pugi::xml_node node, std::string_view path);

// The first child element named `element` whose attribute `attribute` equals `value`.
pugi::xml_node ChildWhere(pugi::xml_node node, const char* element, const char* attribute,
                          std::string_view value);

// The first XML comment among the children of `node`, or an empty node.
pugi::xml_node FirstComment(pugi::xml_node node);

// A child element that a reader asks for: its name, and where FindChildren puts it.
struct Wanted {
  const char* name;
  pugi::xml_node* found;
};

// For a reader that asks one element for several children: puts into each wanted place the
// first child element of that name (what Child would return, an empty node when there is none)
// and returns the first XML comment among the children (what FirstComment would), all in one
// walk over the children instead of one walk per name.
pugi::xml_node FindChildren(pugi::xml_node node, std::initializer_list<Wanted> wanted);

// The value of attribute `name`, or nullopt when the node or the attribute is missing.
std::optional<std::string_view> Attr(pugi::xml_node node, const char* name);

// The concatenated text of every text and CDATA node below `node` ("" for an empty node).
std::string Text(pugi::xml_node node);

// Local name: the part of the element's name after the prefix.
std::string_view BaseName(pugi::xml_node node);

// Stores `value` in `out`. A text that does not fit gets a buffer of its own size, where
// assigning would round the buffer up to twice the short-text capacity (a model holds many
// names just too long for that).
void Store(std::string& out, std::string_view value);

// Reading an attribute into a property. Each returns false and leaves `out` unchanged when the
// attribute is missing; the integer and boolean forms throw the conversion's error (13, 6)
// when the text does not convert.
bool ReadText(pugi::xml_node node, const char* name, std::string& out);
bool ReadInt(pugi::xml_node node, const char* name, std::int32_t& out);
bool ReadBool(pugi::xml_node node, const char* name, bool& out);

// Reading a mandatory attribute: its value, or error 91 (the platform's error for reading a
// missing node) when it is missing.
std::string_view Required(pugi::xml_node node, const char* name);

// Writing, into a DOM node or a text sink (see xml_out.hpp).
// Appends a text node holding one line feed.
void AppendLf(Out parent);
// Appends a text node holding carriage return + line feed.
void AppendCrLf(Out parent);
// Appends a text node.
void AppendText(Out parent, std::string_view text);
// Appends a CDATA section.
void AppendCData(Out parent, std::string_view text);
// Appends an element and returns it.
Out AppendElement(Out parent, const char* name);

// Sets attribute `name` (in a DOM, appended when the element does not have it yet).
void SetAttr(Out node, const char* name, std::string_view value);
void SetAttr(Out node, const char* name, std::int32_t value);
// "1" or "0".
void SetBoolAttr(Out node, const char* name, bool value);

}  // namespace tessaly::xml

#endif  // TESSALY_SRC_COMMON_XML_UTIL_HPP_
