#include "common/character_references.hpp"

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tessaly::io {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

// Whether the parser makes a character of code point `value` (already known to be at most
// U+10FFFF, or flagged beyond it): not NUL, a surrogate, U+FFFE or U+FFFF.
bool IsCharacter(std::uint32_t value) {
  return value != 0 && (value < 0xD800 || value > 0xDFFF) && value != 0xFFFE && value != 0xFFFF;
}

// Whether the reference starting at `at` ("&#") is one the parser decodes (digits closed by
// ';', hexadecimal after a lower-case "x" only, as the parser reads them) into no character.
bool DecodesToNoCharacter(std::string_view text, std::size_t at) {
  std::size_t k = at + 2;
  const bool hex = k < text.size() && text[k] == 'x';
  if (hex) ++k;
  std::uint32_t value = 0;
  bool beyond = false;
  std::size_t digits = 0;
  for (; k < text.size(); ++k, ++digits) {
    const char c = text[k];
    const char lower = static_cast<char>(c | ' ');
    std::uint32_t digit = 0;
    if (c >= '0' && c <= '9') digit = static_cast<std::uint32_t>(c - '0');
    else if (hex && lower >= 'a' && lower <= 'f') digit = static_cast<std::uint32_t>(lower - 'a' + 10);
    else break;
    // Once beyond U+10FFFF the number stays there, however many digits follow (the parser's own
    // arithmetic wraps around and would land anywhere).
    if (!beyond) {
      value = value * (hex ? 16 : 10) + digit;
      beyond = value > 0x10FFFF;
    }
  }
  // Without a digit, or without the ';', the parser leaves the text as it is.
  if (digits == 0 || k >= text.size() || text[k] != ';') return false;
  return beyond || !IsCharacter(value);
}

// The bytes that matter to the scan below (< > " ' &) among the sixteen from `from` (fewer at
// the end of the text), one bit each: markup is a few bytes in forty, found sixteen at a time.
unsigned MarkupMask(std::string_view text, std::size_t from) {
#if defined(__SSE2__)
  if (from + 16 <= text.size()) {
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + from));
    const __m128i angles = _mm_or_si128(_mm_cmpeq_epi8(b, _mm_set1_epi8('<')), _mm_cmpeq_epi8(b, _mm_set1_epi8('>')));
    const __m128i quotes = _mm_or_si128(_mm_cmpeq_epi8(b, _mm_set1_epi8('"')), _mm_cmpeq_epi8(b, _mm_set1_epi8('\'')));
    const __m128i hit = _mm_or_si128(_mm_or_si128(angles, quotes), _mm_cmpeq_epi8(b, _mm_set1_epi8('&')));
    return static_cast<unsigned>(_mm_movemask_epi8(hit));
  }
#endif
  unsigned mask = 0;
  for (std::size_t k = 0; k < 16 && from + k < text.size(); ++k) {
    const char c = text[from + k];
    if (c == '<' || c == '>' || c == '"' || c == '\'' || c == '&') mask |= 1U << k;
  }
  return mask;
}

// The offset just past the first `end` at or after `from`, or the text's size.
std::size_t SkipPast(std::string_view text, std::size_t from, std::string_view end) {
  const std::size_t at = text.find(end, from);
  return at == kNone ? text.size() : at + end.size();
}

// The offset of the quote closing the quoted text that starts at `quote`, or the text's size.
std::size_t SkipQuoted(std::string_view text, std::size_t quote) {
  const std::size_t close = text.find(text[quote], quote + 1);
  return close == kNone ? text.size() : close;
}

// The offset just past a declaration "<!..." that starts at `at` (the document type with its
// internal subset): nested "<!" groups, quoted literals, comments and processing instructions
// inside it are passed over, as the parser passes over them.
std::size_t SkipDeclaration(std::string_view text, std::size_t at) {
  const std::size_t n = text.size();
  std::size_t depth = 0;
  std::size_t i = at + 2;
  while (i < n) {
    const char c = text[i];
    if (text.substr(i, 4) == "<!--") {
      i = SkipPast(text, i + 4, "-->");
    } else if (text.substr(i, 2) == "<?") {
      i = SkipPast(text, i + 2, "?>");
    } else if (text.substr(i, 3) == "<![") {
      i = SkipPast(text, i + 3, "]]>");
    } else if (text.substr(i, 2) == "<!") {
      ++depth;
      i += 2;
    } else if (c == '"' || c == '\'') {
      i = SkipQuoted(text, i) + 1;
    } else if (c == '>') {
      if (depth == 0) return i + 1;
      --depth;
      ++i;
    } else {
      ++i;
    }
  }
  return n;
}

}  // namespace

std::size_t FindInvalidCharacterReference(std::string_view text) {
  // Most documents hold no numeric reference at all.
  if (text.find("&#") == kNone) return kNone;
  const std::size_t n = text.size();
  // Where the scan is: in text, inside a start or end tag, or inside a quoted attribute value
  // (which may hold '<' and '>' as text).
  enum class In { kText, kTag, kValue } in = In::kText;
  char quote = 0;
  std::size_t block = 0;
  while (block < n) {
    std::size_t resume = block + 16;
    for (unsigned mask = MarkupMask(text, block); mask != 0; mask &= mask - 1) {
      const std::size_t i = block + static_cast<std::size_t>(__builtin_ctz(mask));
      const char c = text[i];
      if (c == '&') {
        if (in != In::kTag && i + 1 < n && text[i + 1] == '#' && DecodesToNoCharacter(text, i)) return i;
      } else if (in == In::kValue) {
        if (c == quote) in = In::kTag;
      } else if (in == In::kTag) {
        if (c == '"' || c == '\'') in = In::kValue, quote = c;
        else if (c == '>') in = In::kText;
      } else if (c == '<') {
        const char next = i + 1 < n ? text[i + 1] : '\0';
        if (next != '!' && next != '?') {
          in = In::kTag;
          continue;
        }
        // A comment, CDATA section, processing instruction or declaration is passed over whole;
        // the scan goes on after it.
        const std::string_view rest = text.substr(i);
        if (rest.starts_with("<!--")) resume = SkipPast(text, i + 4, "-->");
        else if (rest.starts_with("<![CDATA[")) resume = SkipPast(text, i + 9, "]]>");
        else if (next == '?') resume = SkipPast(text, i + 2, "?>");
        else resume = SkipDeclaration(text, i);
        break;
      }
    }
    block = resume;
  }
  return kNone;
}

}  // namespace tessaly::io
