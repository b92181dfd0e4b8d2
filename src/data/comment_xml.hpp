// The free comment of a data item or a request: read from a Comment element (or, in older
// documents, from the first XML comment), written as a CDATA section inside Comment.
#ifndef TESSALY_SRC_DATA_COMMENT_XML_HPP_
#define TESSALY_SRC_DATA_COMMENT_XML_HPP_

#include <pugixml.hpp>

#include <string>
#include <string_view>

#include "tessaly/common/xml_out.hpp"

namespace tessaly::data {

// The text of the Comment child `comment` of an element, else of its first XML comment
// `remark` (empty nodes where there is none; xml::FindChildren finds both), with each line feed
// turned into carriage return + line feed and surrounding spaces removed; "" when neither exists.
std::string ReadComment(pugi::xml_node comment, pugi::xml_node remark);

// When `comment` without surrounding spaces is not empty: appends a Comment element holding it
// as a CDATA section, then a line feed.
void WriteComment(xml::Out node, std::string_view comment);

}  // namespace tessaly::data

#endif  // TESSALY_SRC_DATA_COMMENT_XML_HPP_
