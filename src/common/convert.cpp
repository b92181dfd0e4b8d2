#include "tessaly/common/convert.hpp"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "tessaly/common/error.hpp"

namespace tessaly {
namespace {

bool IsBlank(char c) noexcept { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

std::string_view TrimBlanks(std::string_view text) noexcept {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Length of the decimal number at the start of `text` (sign, digits, fraction, and the
// exponent when `with_exponent`), or 0 when there is no digit.
std::size_t ScanNumber(std::string_view text, bool with_exponent) noexcept {
  std::size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  std::size_t digits = 0;
  while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  }
  if (digits == 0) return 0;
  if (with_exponent && i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    std::size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    std::size_t exp_digits = 0;
    while (j < text.size() && IsDigit(text[j])) ++j, ++exp_digits;
    if (exp_digits > 0) i = j;
  }
  return i;
}

// Parses a number whose extent ScanNumber found. Out-of-range magnitudes saturate to the
// largest finite double; underflow gives zero.
double ParseScanned(std::string_view number) noexcept {
  bool negative = false;
  if (!number.empty() && (number.front() == '+' || number.front() == '-')) {
    negative = number.front() == '-';
    number.remove_prefix(1);
  }
  double value = 0;
  auto [ptr, ec] = std::from_chars(number.data(), number.data() + number.size(), value);
  (void)ptr;
  if (ec == std::errc::result_out_of_range) {
    // from_chars leaves the value alone; tell overflow from underflow by the exponent sign.
    auto e = number.find_first_of("eE");
    bool tiny = e != std::string_view::npos && e + 1 < number.size() && number[e + 1] == '-';
    value = tiny ? 0.0 : std::numeric_limits<double>::max();
  }
  return negative ? -value : value;
}

// Decimal digits and exponent of a finite, non-zero value: value = 0.d1d2... * 10^(exp+1),
// i.e. exp is the power of ten of the first digit. At most `max_digits` significant digits,
// the shortest that read back as `value` when that fits.
template <class Float>
void Decompose(Float value, int max_digits, std::string& digits, int& exp) {
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific);
  std::string_view s(buf, static_cast<std::size_t>(res.ptr - buf));
  auto parse = [&](std::string_view sci) {
    digits.clear();
    auto e = sci.find('e');
    for (char c : sci.substr(0, e))
      if (IsDigit(c)) digits.push_back(c);
    int x = 0;
    std::from_chars(sci.data() + e + (sci[e + 1] == '+' ? 2 : 1), sci.data() + sci.size(), x);
    exp = x;
  };
  parse(s);
  if (static_cast<int>(digits.size()) > max_digits) {
    res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific, max_digits - 1);
    parse(std::string_view(buf, static_cast<std::size_t>(res.ptr - buf)));
  }
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
}

template <class Float>
std::string FormatNumber(Float value, int max_digits, bool leading_zero, bool sign_position) {
  std::string out;
  if (std::isnan(value)) return sign_position ? " NaN" : "NaN";
  bool negative = std::signbit(value) && value != 0;
  if (negative) out.push_back('-');
  else if (sign_position) out.push_back(' ');
  if (std::isinf(value)) return out + "Inf";
  if (value == 0) return out + "0";
  const Float magnitude = negative ? -value : value;
  if (magnitude < (max_digits >= 15 ? Float(1e15) : Float(1e7)) && magnitude == std::trunc(magnitude)) {
    // A whole number of at most max_digits digits is written as it is: the common case, kept
    // off the digit decomposition.
    char whole[24];
    auto end = std::to_chars(whole, whole + sizeof whole, static_cast<std::int64_t>(magnitude)).ptr;
    return out.append(whole, end);
  }
  std::string digits;
  int exp = 0;
  Decompose(negative ? -value : value, max_digits, digits, exp);
  const int n = static_cast<int>(digits.size());
  if (exp >= max_digits || exp < -4) {
    out.push_back(digits[0]);
    if (n > 1) {
      out.push_back('.');
      out.append(digits, 1);
    }
    out.push_back('E');
    out.push_back(exp < 0 ? '-' : '+');
    int a = exp < 0 ? -exp : exp;
    if (a < 10) out.push_back('0');
    out += std::to_string(a);
  } else if (exp >= 0) {
    if (n <= exp + 1) {
      out += digits;
      out.append(static_cast<std::size_t>(exp + 1 - n), '0');
    } else {
      out.append(digits, 0, static_cast<std::size_t>(exp + 1));
      out.push_back('.');
      out.append(digits, static_cast<std::size_t>(exp + 1));
    }
  } else {
    if (leading_zero) out.push_back('0');
    out.push_back('.');
    out.append(static_cast<std::size_t>(-exp - 1), '0');
    out += digits;
  }
  return out;
}

// Appends the UTF-8 encoding of code point `cp`.
void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

// Simple case folding for the letters of Latin-1, Latin Extended-A, Greek and Cyrillic.
char32_t FoldCodePoint(char32_t c) noexcept {
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 0x20;
  if (c >= 0x100 && c <= 0x17F) {
    if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149 || c == 0x17F) return c;
    if (c == 0x178) return 0xFF;
    bool odd_upper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    if (odd_upper) return (c % 2 == 1) ? c + 1 : c;
    return (c % 2 == 0) ? c + 1 : c;
  }
  if (c >= 0x391 && c <= 0x3A9 && c != 0x3A2) return c + 0x20;
  if (c >= 0x410 && c <= 0x42F) return c + 0x20;
  if (c >= 0x400 && c <= 0x40F) return c + 0x50;
  return c;
}

}  // namespace

std::int32_t ToInt32(std::string_view text) {
  // Up to nine plain digits, with or without a minus sign, the form documents hold, are read
  // at once; the general reading below gives them the same value.
  if (!text.empty() && text.size() <= 9) {
    const std::size_t first = text.front() == '-' ? 1 : 0;
    std::int32_t value = 0;
    std::size_t i = first;
    for (; i < text.size() && IsDigit(text[i]); ++i) value = value * 10 + (text[i] - '0');
    if (i == text.size() && i > first) return first == 1 ? -value : value;
  }
  std::string_view t = TrimBlanks(text);
  std::size_t len = ScanNumber(t, /*with_exponent=*/false);
  if (len == 0 || len != t.size()) RaisePlatform(errc::kTypeMismatch);
  bool negative = t.front() == '-';
  if (t.front() == '+' || t.front() == '-') t.remove_prefix(1);
  auto dot = t.find('.');
  std::string_view whole = t.substr(0, dot);
  std::string_view fraction = dot == std::string_view::npos ? std::string_view() : t.substr(dot + 1);
  while (!whole.empty() && whole.front() == '0') whole.remove_prefix(1);
  if (whole.size() > 10) RaisePlatform(errc::kOverflow);
  std::int64_t magnitude = 0;
  for (char c : whole) magnitude = magnitude * 10 + (c - '0');
  if (!fraction.empty()) {
    char first = fraction.front();
    bool rest_zero = fraction.find_first_not_of('0', 1) == std::string_view::npos;
    if (first > '5' || (first == '5' && !rest_zero) || (first == '5' && magnitude % 2 == 1)) ++magnitude;
  }
  std::int64_t value = negative ? -magnitude : magnitude;
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
    RaisePlatform(errc::kOverflow);
  return static_cast<std::int32_t>(value);
}

bool ToBool(std::string_view text) {
  std::string_view t = TrimBlanks(text);
  // The two forms documents hold, answered before the general reading below (which gives
  // them the same values).
  if (t == "0") return false;
  if (t == "1") return true;
  std::string lower = AsciiUpper(t);
  if (lower == "TRUE") return true;
  if (lower == "FALSE") return false;
  std::size_t len = ScanNumber(t, /*with_exponent=*/true);
  if (len == 0 || len != t.size()) RaisePlatform(errc::kTypeMismatch);
  return ParseScanned(t) != 0;
}

bool ToBoolOrFalse(std::string_view text) noexcept {
  try {
    return ToBool(text);
  } catch (const Error&) {
    return false;
  }
}

double LeadingNumber(std::string_view text) noexcept {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  std::size_t len = ScanNumber(text, /*with_exponent=*/true);
  return len == 0 ? 0.0 : ParseScanned(text.substr(0, len));
}

std::int32_t RoundToInt32(double value) {
  double r = std::nearbyint(value);  // the default rounding mode rounds halves to even
  if (!(r >= -2147483648.0 && r <= 2147483647.0)) RaisePlatform(errc::kOverflow);
  return static_cast<std::int32_t>(r);
}

std::string IntText(std::int64_t value) { return std::to_string(value); }

std::string NumberText(double value) { return FormatNumber(value, 15, true, false); }
std::string NumberText(float value) { return FormatNumber(value, 7, true, false); }
std::string SignedNumberText(double value) { return FormatNumber(value, 15, false, true); }
std::string SignedNumberText(float value) { return FormatNumber(value, 7, false, true); }

std::string_view TrimSpaces(std::string_view text) noexcept {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::string LfToCrLf(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    if (c == '\n') out.push_back('\r');
    out.push_back(c);
  }
  return out;
}

std::string AsciiUpper(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

namespace {

// Walks the bytes of FoldCase(text) one at a time, folding as it goes.
class FoldedBytes {
 public:
  explicit FoldedBytes(std::string_view text) noexcept : text_(text) {}

  // The next byte of the folded text; false at its end.
  bool Next(unsigned char& byte) noexcept {
    if (pending_ < held_) {
      byte = buffer_[pending_++];
      return true;
    }
    if (at_ >= text_.size()) return false;
    auto b = static_cast<unsigned char>(text_[at_]);
    if (b < 0x80) {
      byte = (b >= 'A' && b <= 'Z') ? static_cast<unsigned char>(b + 32) : b;
      ++at_;
      return true;
    }
    if ((b & 0xE0) == 0xC0 && at_ + 1 < text_.size() && (static_cast<unsigned char>(text_[at_ + 1]) & 0xC0) == 0x80) {
      char32_t cp = (static_cast<char32_t>(b & 0x1F) << 6) | (static_cast<unsigned char>(text_[at_ + 1]) & 0x3F);
      if (cp >= 0x80) {
        std::string folded;
        AppendUtf8(folded, FoldCodePoint(cp));
        held_ = folded.size();
        for (std::size_t k = 0; k < held_; ++k) buffer_[k] = static_cast<unsigned char>(folded[k]);
        pending_ = 1;
        at_ += 2;
        byte = buffer_[0];
        return true;
      }
    }
    byte = b;
    ++at_;
    return true;
  }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
  unsigned char buffer_[4] = {};
  std::size_t held_ = 0;
  std::size_t pending_ = 0;
};

}  // namespace

namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
constexpr std::uint64_t kOnes = 0x0101010101010101ULL;

// `word` with its ASCII capital letters in lower case; other bytes unchanged.
inline std::uint64_t LowerAsciiWord(std::uint64_t word) noexcept {
  const std::uint64_t low7 = word & ~kHighBits;
  // High bit of each byte: at least 'A', and above 'Z' (computed on the low seven bits, so no
  // byte carries into the next).
  const std::uint64_t atLeastA = low7 + kOnes * (0x80 - 'A');
  const std::uint64_t aboveZ = low7 + kOnes * (0x7F - 'Z');
  const std::uint64_t upper = atLeastA & ~aboveZ & ~word & kHighBits;
  return word | (upper >> 2);
}

inline std::uint64_t LoadWord(const char* at, std::size_t size) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, at, size);
  return word;
}

// The bytes of `text` after its last whole eight, as LoadWord gives them (0 when there are
// none). On a little-endian machine a text of eight bytes or more gives them from its last eight
// bytes, shifted down, with a load of fixed size instead of a copy of variable size.
inline std::uint64_t LoadTail(std::string_view text) noexcept {
  const std::size_t rest = text.size() % 8;
  if (rest == 0) return 0;
  if constexpr (std::endian::native == std::endian::little) {
    if (text.size() >= 8) return LoadWord(text.data() + text.size() - 8, 8) >> (8 * (8 - rest));
  }
  return LoadWord(text.data() + text.size() - rest, rest);
}

inline bool AllAscii(std::string_view text) noexcept {
  std::size_t i = 0;
  for (; i + 8 <= text.size(); i += 8)
    if ((LoadWord(text.data() + i, 8) & kHighBits) != 0) return false;
  return (LoadTail(text) & kHighBits) == 0;
}

// A hash of `text` with its ASCII capitals lowered, eight bytes at a time.
std::size_t LoweredHash(std::string_view text) noexcept {
  std::uint64_t hash = 0x9E3779B97F4A7C15ULL ^ text.size();
  std::size_t i = 0;
  auto mix = [&hash](std::uint64_t word) {
    hash = (hash ^ LowerAsciiWord(word)) * 0xFF51AFD7ED558CCDULL;
    hash ^= hash >> 29;
  };
  for (; i + 8 <= text.size(); i += 8) mix(LoadWord(text.data() + i, 8));
  if (i < text.size()) mix(LoadTail(text));
  hash ^= hash >> 33;
  hash *= 0xC4CEB9FE1A85EC53ULL;
  hash ^= hash >> 33;
  return static_cast<std::size_t>(hash);
}

}  // namespace

std::size_t FoldedHash(std::string_view text) noexcept {
  // Plain ASCII folds by lowering its capitals; other texts are folded first (FoldCase leaves no
  // ASCII capital, so lowering them again changes nothing).
  if (AllAscii(text)) return LoweredHash(text);
  try {
    return LoweredHash(FoldCase(text));
  } catch (...) {
    // No memory for the folded copy: a weaker hash that still agrees with FoldedEqual.
    return text.size();
  }
}

bool FoldedEqual(std::string_view a, std::string_view b) noexcept {
  if (a.size() == b.size()) {
    if (a == b) return true;
    if (AllAscii(a) && AllAscii(b)) {
      std::size_t i = 0;
      for (; i + 8 <= a.size(); i += 8)
        if (LowerAsciiWord(LoadWord(a.data() + i, 8)) != LowerAsciiWord(LoadWord(b.data() + i, 8))) return false;
      return LowerAsciiWord(LoadTail(a)) == LowerAsciiWord(LoadTail(b));
    }
  } else if (AllAscii(a) && AllAscii(b)) {
    return false;
  }
  FoldedBytes left(a);
  FoldedBytes right(b);
  unsigned char x = 0;
  unsigned char y = 0;
  for (;;) {
    const bool more = left.Next(x);
    if (more != right.Next(y)) return false;
    if (!more) return true;
    if (x != y) return false;
  }
}

std::string FoldCase(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    auto b = static_cast<unsigned char>(text[i]);
    if (b < 0x80) {
      out.push_back(b >= 'A' && b <= 'Z' ? static_cast<char>(b + 32) : static_cast<char>(b));
      ++i;
      continue;
    }
    // Two-byte sequences cover every letter folded here; anything else is copied as is.
    if ((b & 0xE0) == 0xC0 && i + 1 < text.size() && (static_cast<unsigned char>(text[i + 1]) & 0xC0) == 0x80) {
      char32_t cp = (static_cast<char32_t>(b & 0x1F) << 6) | (static_cast<unsigned char>(text[i + 1]) & 0x3F);
      if (cp >= 0x80) {
        AppendUtf8(out, FoldCodePoint(cp));
        i += 2;
        continue;
      }
    }
    out.push_back(text[i]);
    ++i;
  }
  return out;
}

}  // namespace tessaly
