// The check of a document's numeric character references before it is parsed.
//
// The parser decodes a reference such as "&#65;" or "&#x41;" in text and in attribute values
// into the character's UTF-8 bytes, whatever number it names: a reference to NUL cuts the text
// there, and one to a surrogate, to U+FFFE or U+FFFF, or to a number beyond U+10FFFF leaves bytes
// that are not a character, which a saved document would carry into a file that no longer loads.
// Such references are refused before parsing, like the raw bytes they stand for. References to
// the other control characters are kept: they are read as those characters and written back as
// references.
#ifndef TESSALY_SRC_COMMON_CHARACTER_REFERENCES_HPP_
#define TESSALY_SRC_COMMON_CHARACTER_REFERENCES_HPP_

#include <cstddef>
#include <string_view>

namespace tessaly::io {

// The offset of the first reference in `text` (UTF-8) that the parser would decode into
// something other than a character, or npos. References are looked for where the parser decodes
// them, in text and in quoted attribute values; comments, CDATA sections, processing
// instructions and the document type declaration are passed over, as the parser does.
std::size_t FindInvalidCharacterReference(std::string_view text);

}  // namespace tessaly::io

#endif  // TESSALY_SRC_COMMON_CHARACTER_REFERENCES_HPP_
