#include "data/comment_xml.hpp"

#include <string_view>

#include "common/xml_util.hpp"
#include "tessaly/common/convert.hpp"

namespace tessaly::data {

std::string ReadComment(pugi::xml_node comment, pugi::xml_node remark) {
  std::string text;
  if (comment) {
    text = xml::Text(comment);
  } else if (remark) {
    text = remark.value();
  } else {
    return {};
  }
  // Spaces are trimmed before line feeds become CR LF, which gives the same text (the
  // conversion adds no space and leaves the ends' spaces where they are) without a copy for a
  // comment of one line.
  const std::string_view trimmed = TrimSpaces(text);
  if (trimmed.find('\n') != std::string_view::npos) return LfToCrLf(trimmed);
  if (trimmed.size() == text.size()) return text;
  return std::string(trimmed);
}

void WriteComment(xml::Out node, std::string_view comment) {
  std::string_view trimmed = TrimSpaces(comment);
  if (trimmed.empty()) return;
  xml::AppendCData(xml::AppendElement(node, "Comment"), trimmed);
  xml::AppendLf(node);
}

}  // namespace tessaly::data
