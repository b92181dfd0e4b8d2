#include "data/comment_xml.hpp"

#include "common/xml_util.hpp"
#include "tessaly/common/convert.hpp"

namespace tessaly::data {

std::string ReadComment(pugi::xml_node node) {
  std::string text;
  if (pugi::xml_node comment = xml::Child(node, "Comment")) {
    text = xml::Text(comment);
  } else if (pugi::xml_node remark = xml::FirstComment(node)) {
    text = remark.value();
  } else {
    return {};
  }
  return std::string(TrimSpaces(LfToCrLf(text)));
}

void WriteComment(xml::Out node, std::string_view comment) {
  std::string_view trimmed = TrimSpaces(comment);
  if (trimmed.empty()) return;
  xml::AppendCData(xml::AppendElement(node, "Comment"), trimmed);
  xml::AppendLf(node);
}

}  // namespace tessaly::data
