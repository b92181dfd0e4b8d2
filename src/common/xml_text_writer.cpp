#include "common/xml_text_writer.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace tessaly::xml {
namespace {

constexpr std::size_t kDrainSize = std::size_t{1} << 20;

// Which bytes a text or an attribute value cannot hold as they are. NUL ends the value.
using SpecialTable = std::array<bool, 256>;

constexpr SpecialTable MakeTable(bool attribute) {
  SpecialTable table{};
  for (std::size_t c = 0; c < 32; ++c) table[c] = true;
  if (!attribute) table['\t'] = table['\n'] = table['\r'] = false;
  table['&'] = table['<'] = true;
  table[attribute ? '"' : '>'] = true;
  return table;
}

constexpr SpecialTable kTextSpecial = MakeTable(false);
constexpr SpecialTable kAttributeSpecial = MakeTable(true);

// The longest replacement of one byte ("&quot;").
constexpr std::size_t kMaxEscape = 6;

// Writes `value` escaped at `out`, which has room for kMaxEscape bytes per byte of it; returns
// the end of what was written.
char* Escape(char* out, std::string_view value, const SpecialTable& special) {
  for (char ch : value) {
    auto c = static_cast<unsigned char>(ch);
    if (!special[c]) {
      *out++ = ch;
      continue;
    }
    const char* replacement;
    std::size_t size;
    switch (c) {
      case 0: return out;
      case '&': replacement = "&amp;"; size = 5; break;
      case '<': replacement = "&lt;"; size = 4; break;
      case '>': replacement = "&gt;"; size = 4; break;
      case '"': replacement = "&quot;"; size = 6; break;
      default:
        *out++ = '&';
        *out++ = '#';
        *out++ = static_cast<char>('0' + c / 10);
        *out++ = static_cast<char>('0' + c % 10);
        *out++ = ';';
        continue;
    }
    std::memcpy(out, replacement, size);
    out += size;
  }
  return out;
}

std::string_view UpToNul(std::string_view value) { return value.substr(0, value.find('\0')); }

}  // namespace

TextWriter::TextWriter(Drain drain) : drain_(std::move(drain)) {}

std::string& TextWriter::Finish() {
  while (!open_.empty()) CloseTop();
  buffer_.resize(used_);
  used_ = 0;
  if (drain_) {
    drain_(buffer_);
    buffer_.clear();
  }
  return buffer_;
}

char* TextWriter::Room(std::size_t size) {
  if (buffer_.size() - used_ < size) {
    if (drain_ && used_ > 0) {
      drain_(std::string_view(buffer_.data(), used_));
      used_ = 0;
    }
    if (buffer_.size() - used_ < size) buffer_.resize(std::max({buffer_.size() * 2, used_ + size, kDrainSize}));
  }
  return buffer_.data() + used_;
}

void TextWriter::Put(std::string_view text) {
  std::memcpy(Room(text.size()), text.data(), text.size());
  used_ += text.size();
}

void TextWriter::PutEscapedText(std::string_view text) {
  char* start = Room(text.size() * kMaxEscape);
  used_ += static_cast<std::size_t>(Escape(start, text, kTextSpecial) - start);
}

Sink::Handle TextWriter::AppendElement(Handle parent, const char* name) {
  EnterContent(parent);
  const Open& element = open_.emplace_back(Open{next_++, name, false});
  char* out = Room(element.name.size() + 1);
  *out = '<';
  std::memcpy(out + 1, element.name.data(), element.name.size());
  used_ += element.name.size() + 1;
  return element.id;
}

void TextWriter::SetAttribute(Handle element, const char* name, std::string_view value) {
  if (open_.empty() || open_.back().id != element || open_.back().content)
    throw std::logic_error(std::string("XML text writer: attribute ") + name + " set after the element's content");
  const std::size_t length = std::strlen(name);
  char* out = Room(length + 4 + value.size() * kMaxEscape);
  *out++ = ' ';
  std::memcpy(out, name, length);
  out += length;
  *out++ = '=';
  *out++ = '"';
  out = Escape(out, value, kAttributeSpecial);
  *out++ = '"';
  used_ = static_cast<std::size_t>(out - buffer_.data());
}

void TextWriter::AppendText(Handle parent, std::string_view text) {
  EnterContent(parent);
  PutEscapedText(text);
  EndNode(parent);
}

void TextWriter::AppendCData(Handle parent, std::string_view text) {
  EnterContent(parent);
  text = UpToNul(text);
  // "]]>" cannot stand inside a section: "]]" ends one and ">" starts the next.
  for (;;) {
    std::size_t end = text.find("]]>");
    Put("<![CDATA[");
    if (end == std::string_view::npos) {
      Put(text);
      Put("]]>");
      break;
    }
    Put(text.substr(0, end + 2));
    Put("]]>");
    text.remove_prefix(end + 2);
  }
  EndNode(parent);
}

void TextWriter::AppendProcessingInstruction(Handle parent, const char* target, std::string_view value) {
  EnterContent(parent);
  Put("<?");
  Put(target);
  value = UpToNul(value);
  if (!value.empty()) {
    Put(" ");
    // "?>" would end the instruction early.
    for (std::size_t end; (end = value.find("?>")) != std::string_view::npos; value.remove_prefix(end + 2)) {
      Put(value.substr(0, end));
      Put("? >");
    }
    Put(value);
  }
  Put("?>");
  EndNode(parent);
}

void TextWriter::EnterContent(Handle parent) {
  if (parent == kDocument) {
    while (!open_.empty()) CloseTop();
    return;
  }
  while (!open_.empty() && open_.back().id != parent) CloseTop();
  if (open_.empty()) throw std::logic_error("XML text writer: writing into an element already closed");
  Open& element = open_.back();
  if (!element.content) {
    Put(">");
    element.content = true;
  }
}

void TextWriter::CloseTop() {
  const Open element = open_.back();
  open_.pop_back();
  if (element.content) {
    char* out = Room(element.name.size() + 3);
    out[0] = '<';
    out[1] = '/';
    std::memcpy(out + 2, element.name.data(), element.name.size());
    out[element.name.size() + 2] = '>';
    used_ += element.name.size() + 3;
  } else {
    Put("/>");
  }
  if (open_.empty()) EndNode(kDocument);
}

void TextWriter::EndNode(Handle parent) {
  if (parent == kDocument) Put("\r\n");
}

}  // namespace tessaly::xml
