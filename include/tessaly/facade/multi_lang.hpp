// The language pick among multi-language sibling elements, and the built-in global parameter
// document.
#ifndef TESSALY_FACADE_MULTI_LANG_HPP_
#define TESSALY_FACADE_MULTI_LANG_HPP_

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace tessaly {

// The text of the child `element` of `node` whose xml:lang equals `language` exactly; else of
// the first child `element` whatever its language; else "".
std::string MultiLang(pugi::xml_node node, const char* element, std::string_view language);

// The built-in global parameter document (protocols, failure types, device types).
std::string ParamNodeDefinition();

}  // namespace tessaly

#endif  // TESSALY_FACADE_MULTI_LANG_HPP_
