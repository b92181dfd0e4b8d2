#include "preview/html.hpp"

#include <cstdint>

namespace tessaly::preview {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

// Length of the valid UTF-8 sequence starting at `text[i]`, or 0 when it is not one (overlong
// forms, surrogates and values above U+10FFFF included).
std::size_t Utf8Length(std::string_view text, std::size_t i) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char lead = byte(i);
  std::size_t length = 0;
  std::uint32_t min = 0;
  std::uint32_t cp = 0;
  if (lead < 0x80U) return 1;
  if (lead >= 0xC2U && lead <= 0xDFU) {
    length = 2;
    min = 0x80;
    cp = lead & 0x1FU;
  } else if (lead >= 0xE0U && lead <= 0xEFU) {
    length = 3;
    min = 0x800;
    cp = lead & 0x0FU;
  } else if (lead >= 0xF0U && lead <= 0xF4U) {
    length = 4;
    min = 0x10000;
    cp = lead & 0x07U;
  } else {
    return 0;
  }
  if (i + length > text.size()) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte(i + k) & 0xC0U) != 0x80U) return 0;
    cp = (cp << 6U) | (byte(i + k) & 0x3FU);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
  return length;
}

void Append(std::string& out, std::string_view text, bool attribute) {
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    const std::size_t length = Utf8Length(text, i);
    if (length == 0) {
      out += kReplacement;
      ++i;
      continue;
    }
    if (length > 1) {
      out.append(text, i, length);
      i += length;
      continue;
    }
    ++i;
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"':
        if (attribute) out += "&quot;";
        else out += c;
        break;
      case '\'':
        if (attribute) out += "&#39;";
        else out += c;
        break;
      case '\t': out += attribute ? "&#9;" : "\t"; break;
      case '\n': out += attribute ? "&#10;" : "\n"; break;
      case '\r': out += attribute ? "&#13;" : "\r"; break;
      default:
        if (static_cast<unsigned char>(c) < 0x20U || c == 0x7F) out += kReplacement;
        else out += c;
    }
  }
}

bool IsIdChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
}

}  // namespace

std::string EscapeText(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  Append(out, text, false);
  return out;
}

void AppendText(std::string& out, std::string_view text) { Append(out, text, false); }

std::string EscapeAttr(std::string_view value) {
  std::string out;
  out.reserve(value.size());
  Append(out, value, true);
  return out;
}

void AppendAttr(std::string& out, std::string_view name, std::string_view value) {
  out += ' ';
  out += name;
  out += "=\"";
  Append(out, value, true);
  out += '"';
}

std::string AnchorId(std::string_view prefix, std::string_view name) {
  std::string id(prefix);
  id += '-';
  return id + IdPart(name);
}

std::string IdPart(std::string_view name) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string id;
  for (char c : name) {
    if (IsIdChar(c)) {
      id += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      id += '_';
      id += kHex[byte >> 4U];
      id += kHex[byte & 0xFU];
    }
  }
  return id;
}

std::string FontFamily(std::string_view fontName, std::string_view generic) {
  std::string name;
  for (char c : fontName) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\'' || c == '"' || c == '\\' || c == ';' || c == '{' || c == '}' || c == '<' || c == '>' ||
        byte < 0x20U || byte == 0x7FU)
      continue;
    name += c;
  }
  const auto first = name.find_first_not_of(' ');
  if (first == std::string::npos) return std::string(generic);
  name = name.substr(first, name.find_last_not_of(' ') - first + 1);
  return "'" + name + "', " + std::string(generic);
}

std::string IdRegistry::Unique(std::string id) {
  if (used_.insert(id).second) return id;
  for (int n = 2;; ++n) {
    std::string candidate = id + "~" + std::to_string(n);
    if (used_.insert(candidate).second) return candidate;
  }
}

}  // namespace tessaly::preview
