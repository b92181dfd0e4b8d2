// Reading ECU and parameter documents from a file path or URL into the DOM, and writing documents
// to a file in a chosen encoding. Every failure comes back as a reason text that says what went
// wrong and where, for the "Bad xml file, Reason=..." family of messages.
#ifndef TESSALY_SRC_COMMON_DOCUMENT_IO_HPP_
#define TESSALY_SRC_COMMON_DOCUMENT_IO_HPP_

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "tessaly/common/error.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly::io {

// Reads the bytes at `location`: a file path, a file:// URL or an http(s):// URL. Returns false
// and sets `reason` on failure.
bool ReadLocation(std::string_view location, std::string& bytes, std::string& reason);

// Decodes a document to UTF-8: a byte-order mark (UTF-8, UTF-16) decides first, then the
// encoding named by the XML declaration (UTF-8 when none). Invalid input gives false and a
// reason naming the byte offset.
bool DecodeToUtf8(std::string_view bytes, std::string& utf8, std::string& reason);

// DecodeToUtf8 applied to `text` itself: on success `text` holds the document in UTF-8.
bool DecodeToUtf8InPlace(std::string& text, std::string& reason);

// Parses UTF-8 text into `doc`, keeping whitespace-only text, comments, CDATA and processing
// instructions. The reason of a failure names the line and column.
bool ParseUtf8(pugi::xml_document& doc, std::string_view utf8, std::string& reason);

// ReadLocation, DecodeToUtf8 and ParseUtf8 in one step.
bool LoadDocument(pugi::xml_document& doc, std::string_view location, std::string& reason);
// DecodeToUtf8 and ParseUtf8 of a document held in memory.
bool LoadDocumentText(pugi::xml_document& doc, std::string_view bytes, std::string& reason);

// LoadDocument (or, when `memory` is not null, LoadDocumentText of those bytes) without copying
// the document: `text` receives it, decoded to UTF-8, and the DOM is built inside it, so `text`
// must outlive `doc` and must not be changed while `doc` is used. With `keepText` the DOM gets a
// copy instead and `text` keeps the decoded document unchanged. Results and reasons are those
// of LoadDocument and LoadDocumentText; a file that does not parse is read a second time to
// tell where it fails (a download is never repeated: the DOM then copies it).
bool LoadDocumentInPlace(pugi::xml_document& doc, std::string& text, const std::string& location,
                         const std::string_view* memory, bool keepText, std::string& reason);

// The document as text in `encoding` ("UTF-8", "windows-1252", "UTF-16", ...): no indentation,
// each top-level node followed by CR LF. A character the encoding cannot hold becomes a
// character reference (inside CDATA the section is split around it). Throws Error when the
// encoding is unknown or a character cannot be written at all (in a name or a comment).
std::string Serialize(const pugi::xml_document& doc, std::string_view encoding);

// Writes a document into the sink it is given (the document node of a text sink).
using XmlWriting = std::function<void(xml::Out document)>;

// The document that `write` writes, as text in `encoding`: the same text as Serialize gives for
// a DOM holding what `write` wrote, made without the DOM.
std::string Serialize(const XmlWriting& write, std::string_view encoding);

// Writes `bytes` to `path` atomically: a temporary file beside it is written, flushed and
// renamed over `path`. On failure `path` is unchanged, the temporary is removed, and an Error
// is thrown whose number is the system's error number (errno) and whose description says what
// failed.
void WriteFileAtomically(const std::string& path, std::string_view bytes);

// WriteFileAtomically(path, Serialize(write, encoding)), streaming the text to the file when
// the encoding is UTF-8. What `write` throws comes through unchanged, with `path` untouched; a
// failure to write the file (errno as its number) is returned instead of thrown.
std::optional<Error> SaveAtomically(const std::string& path, const XmlWriting& write, std::string_view encoding);

// The size of a huge page, and its alignment.
constexpr std::uintptr_t kHugePage = std::uintptr_t{2} << 20;

// A part of a buffer: its offset from the buffer's start, and its length.
struct HugePages {
  std::size_t offset = 0;
  std::size_t size = 0;
};

// The part of the buffer [address, address + size) made of whole huge pages; both 0 when there
// is no whole page in it.
HugePages WholeHugePages(std::uintptr_t address, std::size_t size);

// 1-based line and column of byte `offset` in `text`.
void LineColumn(std::string_view text, std::size_t offset, std::size_t& line, std::size_t& column);

}  // namespace tessaly::io

#endif  // TESSALY_SRC_COMMON_DOCUMENT_IO_HPP_
