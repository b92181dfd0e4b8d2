#include "common/document_io.hpp"

#include <curl/curl.h>
#include <fcntl.h>
#include <iconv.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <mutex>
#include <sstream>

#include "common/character_references.hpp"
#include "common/xml_text_writer.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly::io {
namespace {

// Whitespace-only text, comments, CDATA and processing instructions are all kept.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_comments |
                                   pugi::parse_pi | pugi::parse_declaration | pugi::parse_doctype;

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && AsciiUpper(text.substr(0, prefix.size())) == AsciiUpper(prefix);
}

bool IsUtf8Name(std::string_view encoding) {
  std::string e = AsciiUpper(encoding);
  return e == "UTF-8" || e == "UTF8";
}

std::string PercentDecode(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size() && std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
        std::isxdigit(static_cast<unsigned char>(text[i + 2]))) {
      out.push_back(static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16)));
      i += 2;
    } else {
      out.push_back(text[i]);
    }
  }
  return out;
}

std::size_t CurlWrite(char* data, std::size_t size, std::size_t count, void* user) {
  static_cast<std::string*>(user)->append(data, size * count);
  return size * count;
}

bool FetchUrl(std::string_view url, std::string& bytes, std::string& reason) {
  static std::once_flag init;
  std::call_once(init, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
  CURL* curl = curl_easy_init();
  if (curl == nullptr) {
    reason = "cannot start a transfer for '" + std::string(url) + "'";
    return false;
  }
  char error[CURL_ERROR_SIZE] = "";
  std::string u(url);
  curl_easy_setopt(curl, CURLOPT_URL, u.c_str());
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &CurlWrite);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &bytes);
  curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, error);
  curl_easy_setopt(curl, CURLOPT_FAILONERROR, 1L);
  curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, 30L);
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
  CURLcode rc = curl_easy_perform(curl);
  curl_easy_cleanup(curl);
  if (rc != CURLE_OK) {
    reason = "cannot download '" + u + "': " + (error[0] != '\0' ? error : curl_easy_strerror(rc));
    return false;
  }
  return true;
}

// Asks the kernel to back the whole 2 MB pages of a buffer about to be filled with huge pages. A
// large document is read into fresh memory, and with 4 KB pages the kernel takes one fault per
// 4 KB (25 000 for a 100 MB file), each dearer than clearing its page. Where the system gives
// huge pages only on request (or never), this is the request (or nothing happens).
void AskForHugePages(char* data, std::size_t size) {
#ifdef MADV_HUGEPAGE
  const HugePages whole = WholeHugePages(reinterpret_cast<std::uintptr_t>(data), size);
  if (whole.size != 0) ::madvise(data + whole.offset, whole.size, MADV_HUGEPAGE);
#else
  (void)data;
  (void)size;
#endif
}

bool ReadFile(const std::string& path, std::string& bytes, std::string& reason) {
  struct stat st {};
  if (::stat(path.c_str(), &st) != 0) {
    reason = "cannot open '" + path + "': " + std::strerror(errno);
    return false;
  }
  if (S_ISDIR(st.st_mode)) {
    reason = "cannot open '" + path + "': " + std::strerror(EISDIR);
    return false;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    reason = "cannot open '" + path + "': " + std::strerror(errno);
    return false;
  }
  // A regular file is read straight into a string of its size; anything else (a pipe, a
  // device) grows a string as it comes.
  if (S_ISREG(st.st_mode)) {
    bytes.reserve(static_cast<std::size_t>(st.st_size));
    AskForHugePages(bytes.data(), bytes.capacity());
    bytes.resize(static_cast<std::size_t>(st.st_size));
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    if (in.bad()) {
      reason = "cannot read '" + path + "'";
      return false;
    }
    // A file that grew since its size was taken.
    if (in && in.peek() != std::char_traits<char>::eof()) {
      std::ostringstream rest;
      rest << in.rdbuf();
      bytes += std::move(rest).str();
    }
    if (in.bad()) {
      reason = "cannot read '" + path + "'";
      return false;
    }
    return true;
  }
  std::ostringstream buffer;
  buffer << in.rdbuf();
  if (in.bad()) {
    reason = "cannot read '" + path + "'";
    return false;
  }
  bytes = std::move(buffer).str();
  return true;
}

std::string Where(std::string_view text, std::size_t offset) {
  std::size_t line = 0;
  std::size_t column = 0;
  LineColumn(text, offset, line, column);
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// Bytes below 0x20 of a word whose bytes are all ASCII: the high bit of each such byte is set
// in the result (adding 0x60 to a byte below 0x20 stays below 0x80; no byte carries into the
// next).
inline std::uint64_t ControlBytes(std::uint64_t asciiWord) {
  constexpr std::uint64_t kHigh = 0x8080808080808080ULL;
  constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
  return ~(asciiWord + kOnes * 0x60) & kHigh;
}

// Bytes of an all-ASCII word equal to `c`: the high bit of each such byte is set in the result,
// exactly (adding 0x7F to a byte below 0x80 sets its high bit unless the byte is zero, and
// cannot carry into the next byte).
inline std::uint64_t BytesEqual(std::uint64_t asciiWord, unsigned char c) {
  constexpr std::uint64_t kHigh = 0x8080808080808080ULL;
  constexpr std::uint64_t kLow = 0x7F7F7F7F7F7F7F7FULL;
  const std::uint64_t diff = asciiWord ^ (0x0101010101010101ULL * c);
  return ~(diff + kLow) & kHigh;
}

// Checks that `text` is UTF-8 holding only characters XML allows. Returns the offset of the
// first offence, or npos; `what` names it.
std::size_t FindInvalidUtf8(std::string_view text, std::string& what) {
  constexpr std::uint64_t kHigh = 0x8080808080808080ULL;
  const auto* s = reinterpret_cast<const unsigned char*>(text.data());
  const std::size_t n = text.size();
  for (std::size_t i = 0; i < n;) {
#if defined(__SSE2__)
    // Sixteen bytes at a time while they are ASCII whose only control characters are tabs and
    // line breaks: as signed bytes, both the controls and the bytes from 0x80 up are below 0x20.
    const __m128i space = _mm_set1_epi8(0x20);
    const __m128i tab = _mm_set1_epi8('\t');
    const __m128i lineFeed = _mm_set1_epi8('\n');
    const __m128i carriageReturn = _mm_set1_epi8('\r');
    while (i + 16 <= n) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
      const __m128i low = _mm_cmplt_epi8(bytes, space);
      if (_mm_movemask_epi8(low) != 0) {
        const __m128i allowed = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, tab), _mm_cmpeq_epi8(bytes, lineFeed)),
                                             _mm_cmpeq_epi8(bytes, carriageReturn));
        if (_mm_movemask_epi8(_mm_andnot_si128(allowed, low)) != 0) break;
      }
      i += 16;
    }
#endif
    // Eight ASCII bytes at a time, as long as their only control characters are tabs and line
    // breaks; anything else is looked at byte by byte below.
    while (i + 8 <= n) {
      std::uint64_t word;
      std::memcpy(&word, s + i, sizeof word);
      if ((word & kHigh) != 0) break;
      if (const std::uint64_t controls = ControlBytes(word); controls != 0) {
        const std::uint64_t allowed = BytesEqual(word, '\t') | BytesEqual(word, '\n') | BytesEqual(word, '\r');
        if ((controls & ~allowed) != 0) break;
      }
      i += 8;
    }
    if (i >= n) break;
    unsigned char b = s[i];
    if (b < 0x80) {
      if (b < 0x20 && b != '\t' && b != '\n' && b != '\r') {
        what = b == 0 ? "NUL character" : "control character " + std::to_string(b);
        return i;
      }
      ++i;
      continue;
    }
    std::size_t len = 0;
    char32_t cp = 0;
    char32_t min = 0;
    if ((b & 0xE0) == 0xC0) len = 2, cp = b & 0x1F, min = 0x80;
    else if ((b & 0xF0) == 0xE0) len = 3, cp = b & 0x0F, min = 0x800;
    else if ((b & 0xF8) == 0xF0) len = 4, cp = b & 0x07, min = 0x10000;
    bool ok = len != 0 && i + len <= n;
    for (std::size_t k = 1; ok && k < len; ++k) {
      if ((s[i + k] & 0xC0) != 0x80) ok = false;
      else cp = (cp << 6) | (s[i + k] & 0x3F);
    }
    if (!ok || cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF) || cp == 0xFFFE || cp == 0xFFFF) {
      what = "invalid UTF-8 byte sequence";
      return i;
    }
    i += len;
  }
  return std::string_view::npos;
}

// Converts `in` from encoding `from` to encoding `to` with iconv. Returns false with the
// offset of the first byte that does not convert (or npos when iconv refuses the encoding).
bool Convert(std::string_view in, const char* from, const char* to, std::string& out, std::size_t& bad_offset) {
  iconv_t cd = iconv_open(to, from);
  if (cd == reinterpret_cast<iconv_t>(-1)) {
    bad_offset = std::string_view::npos;
    return false;
  }
  out.clear();
  out.resize(in.size() * 2 + 16);
  char* src = const_cast<char*>(in.data());
  std::size_t src_left = in.size();
  std::size_t used = 0;
  bool ok = true;
  while (src_left > 0) {
    char* dst = out.data() + used;
    std::size_t dst_left = out.size() - used;
    std::size_t r = iconv(cd, &src, &src_left, &dst, &dst_left);
    used = out.size() - dst_left;
    if (r != static_cast<std::size_t>(-1)) break;
    if (errno == E2BIG) {
      out.resize(out.size() * 2);
      continue;
    }
    bad_offset = static_cast<std::size_t>(src - in.data());
    ok = false;
    break;
  }
  iconv_close(cd);
  out.resize(used);
  return ok;
}

// The encoding named by the XML declaration at the start of `bytes`, or "".
std::string DeclaredEncoding(std::string_view bytes) {
  if (!bytes.starts_with("<?xml")) return {};
  std::string_view decl = bytes.substr(0, bytes.find("?>"));
  auto pos = decl.find("encoding");
  if (pos == std::string_view::npos) return {};
  pos = decl.find_first_of("\"'", pos);
  if (pos == std::string_view::npos) return {};
  auto end = decl.find(decl[pos], pos + 1);
  if (end == std::string_view::npos) return {};
  return std::string(decl.substr(pos + 1, end - pos - 1));
}

// Where a character that the target encoding cannot hold stands in the serialized text.
enum class Context { kContent, kTag, kAttribute, kCData, kOther };

// Tracks the markup context of serialized text, scanning forward only.
class ContextScanner {
 public:
  explicit ContextScanner(std::string_view text) : text_(text) {}
  Context At(std::size_t offset) {
    while (pos_ < offset) Step();
    return context_;
  }

 private:
  void Step() {
    std::string_view rest = text_.substr(pos_);
    switch (context_) {
      case Context::kContent:
        if (rest.starts_with("<![CDATA[")) return Enter(Context::kCData, 9);
        if (rest.starts_with("<!--") || rest.starts_with("<?")) return Enter(Context::kOther, 2);
        if (rest.front() == '<') return Enter(Context::kTag, 1);
        break;
      case Context::kTag:
        if (rest.front() == '"') return Enter(Context::kAttribute, 1);
        if (rest.front() == '>') return Enter(Context::kContent, 1);
        break;
      case Context::kAttribute:
        if (rest.front() == '"') return Enter(Context::kTag, 1);
        break;
      case Context::kCData:
        if (rest.starts_with("]]>")) return Enter(Context::kContent, 3);
        break;
      case Context::kOther:
        if (rest.starts_with("-->")) return Enter(Context::kContent, 3);
        if (rest.starts_with("?>")) return Enter(Context::kContent, 2);
        break;
    }
    ++pos_;
  }
  void Enter(Context next, std::size_t length) {
    context_ = next;
    pos_ += length;
  }

  std::string_view text_;
  std::size_t pos_ = 0;
  Context context_ = Context::kContent;
};

char32_t DecodeAt(std::string_view text, std::size_t offset, std::size_t& length) {
  const auto* s = reinterpret_cast<const unsigned char*>(text.data() + offset);
  unsigned char b = s[0];
  length = b < 0x80 ? 1 : (b & 0xE0) == 0xC0 ? 2 : (b & 0xF0) == 0xE0 ? 3 : 4;
  char32_t cp = length == 1 ? b : length == 2 ? (b & 0x1F) : length == 3 ? (b & 0x0F) : (b & 0x07);
  for (std::size_t k = 1; k < length; ++k) cp = (cp << 6) | (s[k] & 0x3F);
  return cp;
}

// Encodes UTF-8 `text` in `encoding`, replacing characters the encoding cannot hold.
std::string Encode(std::string_view text, const std::string& encoding) {
  std::string upper = AsciiUpper(encoding);
  std::string target = encoding;
  std::string out;
  if (upper == "UTF-16" || upper == "UCS-2") {
    target = "UTF-16LE";
    out = "\xFF\xFE";
  }
  ContextScanner scanner(text);
  std::size_t start = 0;
  while (start <= text.size()) {
    std::string converted;
    std::size_t bad = 0;
    std::string_view rest = text.substr(start);
    bool ok = Convert(rest, "UTF-8", target.c_str(), converted, bad);
    out += converted;
    if (ok) break;
    if (bad == std::string_view::npos)
      Raise(errc::kModel, "ExportUceToXml", "Unknown encoding '" + encoding + "'");
    std::size_t length = 0;
    std::size_t at = start + bad;
    char32_t cp = DecodeAt(text, at, length);
    std::string ref = "&#" + std::to_string(static_cast<std::uint32_t>(cp)) + ";";
    switch (scanner.At(at)) {
      case Context::kContent:
      case Context::kAttribute: out += ref; break;
      case Context::kCData: out += "]]>" + ref + "<![CDATA["; break;
      default:
        Raise(errc::kModel, "ExportUceToXml",
              "Character U+" + std::to_string(static_cast<std::uint32_t>(cp)) + " cannot be written in a name or comment in " + encoding);
    }
    start = at + length;
  }
  return out;
}

class StringWriter : public pugi::xml_writer {
 public:
  explicit StringWriter(std::string& out) : out_(out) {}
  void write(const void* data, std::size_t size) override { out_.append(static_cast<const char*>(data), size); }

 private:
  std::string& out_;
};

}  // namespace

HugePages WholeHugePages(std::uintptr_t address, std::size_t size) {
  const std::uintptr_t begin = (address + kHugePage - 1) & ~(kHugePage - 1);
  const std::uintptr_t end = (address + size) & ~(kHugePage - 1);
  if (end <= begin) return {};
  return {begin - address, end - begin};
}

bool ReadLocation(std::string_view location, std::string& bytes, std::string& reason) {
  if (StartsWithNoCase(location, "http://") || StartsWithNoCase(location, "https://"))
    return FetchUrl(location, bytes, reason);
  if (StartsWithNoCase(location, "file://")) {
    std::string_view rest = location.substr(7);
    if (StartsWithNoCase(rest, "localhost/")) rest.remove_prefix(9);
    return ReadFile(PercentDecode(rest), bytes, reason);
  }
  return ReadFile(std::string(location), bytes, reason);
}

bool DecodeToUtf8InPlace(std::string& text, std::string& reason) {
  const char* from = nullptr;
  std::string_view body = text;
  std::string declared;
  std::size_t skipped = 0;
  if (body.starts_with("\xEF\xBB\xBF")) {
    skipped = 3;
  } else if (body.starts_with("\xFF\xFE")) {
    from = "UTF-16LE", skipped = 2;
  } else if (body.starts_with("\xFE\xFF")) {
    from = "UTF-16BE", skipped = 2;
  } else if (body.size() >= 4 && body.substr(0, 4) == std::string_view("<\0?\0", 4)) {
    from = "UTF-16LE";
  } else if (body.size() >= 4 && body.substr(0, 4) == std::string_view("\0<\0?", 4)) {
    from = "UTF-16BE";
  } else {
    declared = DeclaredEncoding(body);
    if (!declared.empty() && !IsUtf8Name(declared)) from = declared.c_str();
  }
  if (from == nullptr) {
    text.erase(0, skipped);
  } else {
    std::string utf8;
    std::size_t bad = 0;
    if (!Convert(body.substr(skipped), from, "UTF-8", utf8, bad)) {
      if (bad == std::string_view::npos) reason = "unsupported encoding '" + std::string(from) + "'";
      else reason = "invalid " + std::string(from) + " byte sequence at byte offset " + std::to_string(bad + skipped);
      return false;
    }
    text.swap(utf8);
  }
  std::string what;
  std::size_t bad = FindInvalidUtf8(text, what);
  if (bad != std::string_view::npos) {
    reason = what + " at " + Where(text, bad);
    return false;
  }
  bad = FindInvalidCharacterReference(text);
  if (bad != std::string_view::npos) {
    reason = "invalid character reference at " + Where(text, bad);
    return false;
  }
  return true;
}

bool DecodeToUtf8(std::string_view bytes, std::string& utf8, std::string& reason) {
  utf8.assign(bytes);
  return DecodeToUtf8InPlace(utf8, reason);
}

bool ParseUtf8(pugi::xml_document& doc, std::string_view utf8, std::string& reason) {
  pugi::xml_parse_result result = doc.load_buffer(utf8.data(), utf8.size(), kParseOptions, pugi::encoding_utf8);
  if (!result) {
    reason = std::string(result.description());
    if (result.status != pugi::status_no_document_element)
      reason += " at " + Where(utf8, static_cast<std::size_t>(result.offset));
    return false;
  }
  return true;
}

bool LoadDocumentInPlace(pugi::xml_document& doc, std::string& text, const std::string& location,
                         const std::string_view* memory, bool keepText, std::string& reason) {
  if (memory == nullptr && (StartsWithNoCase(location, "http://") || StartsWithNoCase(location, "https://"))) {
    // A download is not repeated: the DOM gets a copy of its own.
    std::string bytes;
    return ReadLocation(location, bytes, reason) && LoadDocumentText(doc, bytes, reason);
  }
  if (memory != nullptr) text.assign(*memory);
  else if (!ReadLocation(location, text, reason)) return false;
  if (!DecodeToUtf8InPlace(text, reason)) return false;
  if (keepText) return ParseUtf8(doc, text, reason);
  const pugi::xml_parse_result result = doc.load_buffer_inplace(text.data(), text.size(), kParseOptions, pugi::encoding_utf8);
  if (result) return true;
  // Parsing in place has rewritten part of the text, so the line and column of the failure are
  // taken from a parse of the original document.
  doc.reset();
  std::string().swap(text);
  return memory != nullptr ? LoadDocumentText(doc, *memory, reason) : LoadDocument(doc, location, reason);
}

bool LoadDocumentText(pugi::xml_document& doc, std::string_view bytes, std::string& reason) {
  std::string utf8;
  return DecodeToUtf8(bytes, utf8, reason) && ParseUtf8(doc, utf8, reason);
}

bool LoadDocument(pugi::xml_document& doc, std::string_view location, std::string& reason) {
  std::string bytes;
  return ReadLocation(location, bytes, reason) && LoadDocumentText(doc, bytes, reason);
}

std::string Serialize(const pugi::xml_document& doc, std::string_view encoding) {
  std::string utf8;
  StringWriter writer(utf8);
  for (pugi::xml_node node = doc.first_child(); node; node = node.next_sibling()) {
    node.print(writer, "", pugi::format_raw, pugi::encoding_utf8);
    utf8 += "\r\n";
  }
  if (IsUtf8Name(encoding)) return utf8;
  return Encode(utf8, std::string(encoding));
}

namespace {

std::string WriteUtf8(const XmlWriting& write) {
  xml::TextWriter writer;
  write(writer.Document());
  return std::move(writer.Finish());
}

}  // namespace

std::string Serialize(const XmlWriting& write, std::string_view encoding) {
  std::string utf8 = WriteUtf8(write);
  if (IsUtf8Name(encoding)) return utf8;
  return Encode(utf8, std::string(encoding));
}

namespace {

// Writes everything to `fd`, retrying interrupted writes; returns 0 or the error number.
int WriteAll(int fd, const char* data, std::size_t size) {
  std::size_t written = 0;
  while (written < size) {
    ssize_t n = ::write(fd, data + written, size - written);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return errno;
    written += static_cast<std::size_t>(n);
  }
  return 0;
}

// Passes text to a file, keeping the first write error.
class FileWriter {
 public:
  explicit FileWriter(int fd) : fd_(fd) {}
  void Write(std::string_view text) {
    if (error_ == 0) error_ = WriteAll(fd_, text.data(), text.size());
  }
  int error() const { return error_; }

 private:
  int fd_;
  int error_ = 0;
};

// Writes a file at `path` atomically: `fill` writes the content into the descriptor of a
// temporary file beside it (returning 0 or an error number), which is then flushed and renamed
// over `path`. On failure `path` is unchanged, the temporary is removed, and an Error with the
// error number is thrown.
template <class Fill>
void ReplaceFile(const std::string& path, Fill&& fill) {
  auto fail = [&](int number) { Raise(number, "ExportUceToXml", "cannot write '" + path + "': " + std::strerror(number)); };
  struct stat st {};
  bool exists = ::stat(path.c_str(), &st) == 0;
  if (exists && S_ISDIR(st.st_mode)) fail(EISDIR);
  static std::atomic<unsigned> counter{0};
  std::string temp = path + ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(counter++);
  int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) fail(errno);
  int error = 0;
  try {
    error = fill(fd);
  } catch (...) {
    ::close(fd);
    ::unlink(temp.c_str());
    throw;
  }
  if (error == 0 && exists && ::fchmod(fd, st.st_mode & 07777) != 0) error = errno;
  if (error == 0 && ::fsync(fd) != 0) error = errno;
  if (::close(fd) != 0 && error == 0) error = errno;
  if (error == 0 && ::rename(temp.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) {
    ::unlink(temp.c_str());
    fail(error);
  }
}

}  // namespace

void WriteFileAtomically(const std::string& path, std::string_view bytes) {
  ReplaceFile(path, [&](int fd) { return WriteAll(fd, bytes.data(), bytes.size()); });
}

std::optional<Error> SaveAtomically(const std::string& path, const XmlWriting& write, std::string_view encoding) {
  bool writing = false;
  try {
    if (!IsUtf8Name(encoding)) {
      writing = true;
      std::string utf8 = WriteUtf8(write);
      writing = false;
      WriteFileAtomically(path, Encode(utf8, std::string(encoding)));
      return std::nullopt;
    }
    // UTF-8 needs no conversion: the text goes to the file as it is written, a megabyte at a
    // time, and the whole text is never held.
    ReplaceFile(path, [&](int fd) {
      FileWriter file(fd);
      xml::TextWriter writer([&](std::string_view text) { file.Write(text); });
      writing = true;
      write(writer.Document());
      writer.Finish();
      writing = false;
      return file.error();
    });
  } catch (const Error& error) {
    if (writing) throw;
    return error;
  }
  return std::nullopt;
}

void LineColumn(std::string_view text, std::size_t offset, std::size_t& line, std::size_t& column) {
  line = 1;
  column = 1;
  if (offset > text.size()) offset = text.size();
  for (std::size_t i = 0; i < offset; ++i) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    if (c == '\n') {
      ++line;
      column = 1;
    } else if ((c & 0xC0) != 0x80) {
      ++column;
    }
  }
}

}  // namespace tessaly::io
