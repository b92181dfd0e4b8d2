// ByteString: the sent or expected reply bytes of a request. The text it was given is kept
// exactly as it was and given back unchanged, so a document written after reading holds the same
// bytes text. When the text is written the way diagnostic tools write bytes, hex pairs separated
// by blanks ("21 A0 FF"), the bytes themselves are available too.
#ifndef TESSALY_DATA_BYTE_STRING_HPP_
#define TESSALY_DATA_BYTE_STRING_HPP_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

class ByteString {
 public:
  ByteString() = default;
  explicit ByteString(std::string text) : text_(std::move(text)) {}

  // The bytes as text: exactly the text last given.
  const std::string& ToText() const noexcept { return text_; }
  // Sets the bytes from text, kept as given.
  void FromText(std::string text) { text_ = std::move(text); }
  // True when the text holds at least one character other than a blank (space, tab, carriage
  // return, line feed).
  bool HasBytes() const noexcept;

  // The bytes, when the text is a sequence of two-digit hex numbers (either letter case)
  // separated by blanks, with blanks allowed before and after ("21 A0 FF" gives 0x21 0xA0 0xFF;
  // blank text gives no bytes). Any other text gives nullopt.
  std::optional<std::vector<std::uint8_t>> Bytes() const;
  // Sets the text to the bytes as upper-case hex pairs separated by one space ("21 A0 FF").
  void SetBytes(const std::vector<std::uint8_t>& bytes);

 private:
  std::string text_;
};

}  // namespace tessaly

#endif  // TESSALY_DATA_BYTE_STRING_HPP_
