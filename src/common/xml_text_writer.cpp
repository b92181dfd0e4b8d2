#include "common/xml_text_writer.hpp"

#include <array>
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

void AppendEscaped(std::string& out, std::string_view value, const SpecialTable& special) {
  std::size_t run = 0;
  for (std::size_t i = 0; i < value.size(); ++i) {
    auto c = static_cast<unsigned char>(value[i]);
    if (!special[c]) continue;
    out.append(value.data() + run, i - run);
    run = i + 1;
    switch (c) {
      case 0: return;
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: {
        const char reference[] = {'&', '#', static_cast<char>('0' + c / 10), static_cast<char>('0' + c % 10), ';'};
        out.append(reference, sizeof reference);
      }
    }
  }
  out.append(value.data() + run, value.size() - run);
}

std::string_view UpToNul(std::string_view value) { return value.substr(0, value.find('\0')); }

}  // namespace

TextWriter::TextWriter(Drain drain) : drain_(std::move(drain)) {}

std::string& TextWriter::Finish() {
  while (depth_ > 0) CloseTop();
  if (drain_) {
    drain_(text_);
    text_.clear();
  }
  return text_;
}

Sink::Handle TextWriter::AppendElement(Handle parent, const char* name) {
  EnterContent(parent);
  if (depth_ == open_.size()) open_.emplace_back();
  Open& element = open_[depth_++];
  element.id = next_++;
  element.name.assign(name);
  element.content = false;
  text_ += '<';
  text_ += element.name;
  return element.id;
}

void TextWriter::SetAttribute(Handle element, const char* name, std::string_view value) {
  if (depth_ == 0 || open_[depth_ - 1].id != element || open_[depth_ - 1].content)
    throw std::logic_error(std::string("XML text writer: attribute ") + name + " set after the element's content");
  text_ += ' ';
  text_ += name;
  text_ += "=\"";
  AppendEscaped(text_, value, kAttributeSpecial);
  text_ += '"';
}

void TextWriter::AppendText(Handle parent, std::string_view text) {
  EnterContent(parent);
  AppendEscaped(text_, text, kTextSpecial);
  EndNode(parent);
}

void TextWriter::AppendCData(Handle parent, std::string_view text) {
  EnterContent(parent);
  text = UpToNul(text);
  // "]]>" cannot stand inside a section: "]]" ends one and ">" starts the next.
  for (;;) {
    std::size_t end = text.find("]]>");
    text_ += "<![CDATA[";
    if (end == std::string_view::npos) {
      text_ += text;
      text_ += "]]>";
      break;
    }
    text_ += text.substr(0, end + 2);
    text_ += "]]>";
    text.remove_prefix(end + 2);
  }
  EndNode(parent);
}

void TextWriter::AppendProcessingInstruction(Handle parent, const char* target, std::string_view value) {
  EnterContent(parent);
  text_ += "<?";
  text_ += target;
  value = UpToNul(value);
  if (!value.empty()) {
    text_ += ' ';
    // "?>" would end the instruction early.
    for (std::size_t end; (end = value.find("?>")) != std::string_view::npos; value.remove_prefix(end + 2)) {
      text_ += value.substr(0, end);
      text_ += "? >";
    }
    text_ += value;
  }
  text_ += "?>";
  EndNode(parent);
}

void TextWriter::EnterContent(Handle parent) {
  if (drain_ && text_.size() >= kDrainSize) {
    drain_(text_);
    text_.clear();
  }
  if (parent == kDocument) {
    while (depth_ > 0) CloseTop();
    return;
  }
  while (depth_ > 0 && open_[depth_ - 1].id != parent) CloseTop();
  if (depth_ == 0) throw std::logic_error("XML text writer: writing into an element already closed");
  Open& element = open_[depth_ - 1];
  if (!element.content) {
    text_ += '>';
    element.content = true;
  }
}

void TextWriter::CloseTop() {
  Open& element = open_[--depth_];
  if (element.content) {
    text_ += "</";
    text_ += element.name;
    text_ += '>';
  } else {
    text_ += "/>";
  }
  if (depth_ == 0) EndNode(kDocument);
}

void TextWriter::EndNode(Handle parent) {
  if (parent == kDocument) text_ += "\r\n";
}

}  // namespace tessaly::xml
