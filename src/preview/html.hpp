// Writing HTML and inline SVG safely: escaping of text and attribute values, anchor ids built
// from names, and font-family values built from font names. Every name and text of a document
// reaches the page through these functions.
#ifndef TESSALY_SRC_PREVIEW_HTML_HPP_
#define TESSALY_SRC_PREVIEW_HTML_HPP_

#include <set>
#include <string>
#include <string_view>

namespace tessaly::preview {

// Text content: & < > become character references. Bytes that are not valid UTF-8 and control
// characters other than tab, line feed and carriage return (which HTML does not allow) become
// U+FFFD, so no input can break the page's markup or encoding.
std::string EscapeText(std::string_view text);
void AppendText(std::string& out, std::string_view text);

// An attribute value to be written between double quotes: & < > " ' become character
// references; the same replacement of invalid bytes and control characters applies, and tab,
// line feed and carriage return become references too so that they survive in the value.
std::string EscapeAttr(std::string_view value);
void AppendAttr(std::string& out, std::string_view name, std::string_view value);

// An anchor id for `name` under `prefix`: prefix, "-", then the name with every byte other than
// an ASCII letter, digit or "-" written as "_" and two lower-case hex digits. Different names
// give different ids, and the id needs no escaping in an attribute or a URL fragment.
std::string AnchorId(std::string_view prefix, std::string_view name);
// The name part of an anchor id alone (AnchorId without the prefix and the "-").
std::string IdPart(std::string_view name);

// A CSS font-family list for a font name: the name in single quotes (quotes, backslashes and
// characters that could end the declaration removed), then the generic family. An empty name
// gives the generic family alone.
std::string FontFamily(std::string_view fontName, std::string_view generic = "sans-serif");

// Hands out ids that are unique within one page: an id already given gets "~2", "~3", ...
class IdRegistry {
 public:
  std::string Unique(std::string id);

 private:
  std::set<std::string> used_;
};

}  // namespace tessaly::preview

#endif  // TESSALY_SRC_PREVIEW_HTML_HPP_
