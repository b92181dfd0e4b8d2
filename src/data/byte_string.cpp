#include "tessaly/data/byte_string.hpp"

namespace tessaly {
namespace {

bool IsBlank(char c) noexcept { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

int HexDigit(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

bool ByteString::HasBytes() const noexcept {
  for (char c : text_)
    if (!IsBlank(c)) return true;
  return false;
}

std::optional<std::vector<std::uint8_t>> ByteString::Bytes() const {
  std::vector<std::uint8_t> bytes;
  std::size_t i = 0;
  const std::size_t n = text_.size();
  while (i < n) {
    if (IsBlank(text_[i])) {
      ++i;
      continue;
    }
    // A byte is exactly two hex digits, ended by a blank or the end of the text.
    if (i + 1 >= n) return std::nullopt;
    int high = HexDigit(text_[i]);
    int low = HexDigit(text_[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    if (i + 2 < n && !IsBlank(text_[i + 2])) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
    i += 2;
  }
  return bytes;
}

void ByteString::SetBytes(const std::vector<std::uint8_t>& bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size() * 3);
  for (std::uint8_t b : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits[b >> 4];
    text += kDigits[b & 0x0F];
  }
  text_ = std::move(text);
}

}  // namespace tessaly
