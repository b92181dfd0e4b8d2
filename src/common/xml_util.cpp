#include "common/xml_util.hpp"

#include <charconv>
#include <cstring>

#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly::xml {
namespace {

pugi::xml_node FindPath(pugi::xml_node node, std::string_view path) {
  auto slash = path.find('/');
  std::string head(path.substr(0, slash));
  for (pugi::xml_node child = node.child(head.c_str()); child; child = child.next_sibling(head.c_str())) {
    if (child.type() != pugi::node_element) continue;
    if (slash == std::string_view::npos) return child;
    if (pugi::xml_node found = FindPath(child, path.substr(slash + 1))) return found;
  }
  return {};
}

// Appends the text and CDATA nodes below `root` in document order. The walk follows the
// parent links instead of recursing, since a document can nest elements deeper than the stack
// could follow.
void AppendTextTo(std::string& out, pugi::xml_node root) {
  pugi::xml_node node = root.first_child();
  while (node) {
    pugi::xml_node_type type = node.type();
    if (type == pugi::node_pcdata || type == pugi::node_cdata) out += node.value();
    if (type == pugi::node_element && node.first_child()) {
      node = node.first_child();
      continue;
    }
    while (node != root && !node.next_sibling()) node = node.parent();
    if (node == root) return;
    node = node.next_sibling();
  }
}

}  // namespace

pugi::xml_node Child(pugi::xml_node node, const char* name) {
  for (pugi::xml_node child = node.child(name); child; child = child.next_sibling(name))
    if (child.type() == pugi::node_element) return child;
  return {};
}

pugi::xml_node Path(pugi::xml_node node, std::string_view path) { return FindPath(node, path); }

pugi::xml_node ChildWhere(pugi::xml_node node, const char* element, const char* attribute,
                          std::string_view value) {
  for (pugi::xml_node child = Child(node, element); child; child = child.next_sibling(element)) {
    pugi::xml_attribute a = child.attribute(attribute);
    if (child.type() == pugi::node_element && a && value == a.value()) return child;
  }
  return {};
}

pugi::xml_node FirstComment(pugi::xml_node node) {
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling())
    if (child.type() == pugi::node_comment) return child;
  return {};
}

pugi::xml_node FindChildren(pugi::xml_node node, std::initializer_list<Wanted> wanted) {
  for (const Wanted& w : wanted) *w.found = pugi::xml_node();
  pugi::xml_node comment;
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    const pugi::xml_node_type type = child.type();
    if (type == pugi::node_comment) {
      if (!comment) comment = child;
      continue;
    }
    if (type != pugi::node_element) continue;
    const char* name = child.name();
    for (const Wanted& w : wanted) {
      // The first letters differ for most pairs: the comparison of the rest is seldom needed.
      if (!*w.found && name[0] == w.name[0] && std::strcmp(name, w.name) == 0) {
        *w.found = child;
        break;
      }
    }
  }
  return comment;
}

std::optional<std::string_view> Attr(pugi::xml_node node, const char* name) {
  pugi::xml_attribute a = node.attribute(name);
  if (!a) return std::nullopt;
  return std::string_view(a.value());
}

std::string Text(pugi::xml_node node) {
  auto holdsText = [](pugi::xml_node n) {
    return n.type() == pugi::node_pcdata || n.type() == pugi::node_cdata;
  };
  if (holdsText(node) || node.type() == pugi::node_comment) return node.value();
  // The usual element holds one text or CDATA node: its text is taken as it is.
  pugi::xml_node only = node.first_child();
  if (only && !only.next_sibling() && holdsText(only)) return only.value();
  std::string out;
  AppendTextTo(out, node);
  return out;
}

std::string_view BaseName(pugi::xml_node node) {
  std::string_view name = node.name();
  auto colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

void Store(std::string& out, std::string_view value) {
  if (value.size() > out.capacity()) out = std::string(value);
  else out.assign(value);
}

bool ReadText(pugi::xml_node node, const char* name, std::string& out) {
  auto value = Attr(node, name);
  if (!value) return false;
  Store(out, *value);
  return true;
}

bool ReadInt(pugi::xml_node node, const char* name, std::int32_t& out) {
  auto value = Attr(node, name);
  if (!value) return false;
  out = ToInt32(*value);
  return true;
}

bool ReadBool(pugi::xml_node node, const char* name, bool& out) {
  auto value = Attr(node, name);
  if (!value) return false;
  out = ToBool(*value);
  return true;
}

std::string_view Required(pugi::xml_node node, const char* name) {
  auto value = Attr(node, name);
  if (!value) RaisePlatform(errc::kObjectNotSet);
  return *value;
}

void AppendLf(Out parent) { parent.sink().AppendText(parent.handle(), "\n"); }

void AppendCrLf(Out parent) { parent.sink().AppendText(parent.handle(), "\r\n"); }

void AppendText(Out parent, std::string_view text) { parent.sink().AppendText(parent.handle(), text); }

void AppendCData(Out parent, std::string_view text) { parent.sink().AppendCData(parent.handle(), text); }

Out AppendElement(Out parent, const char* name) {
  return Out(parent.sink(), parent.sink().AppendElement(parent.handle(), name));
}

void SetAttr(Out node, const char* name, std::string_view value) {
  node.sink().SetAttribute(node.handle(), name, value);
}

void SetAttr(Out node, const char* name, std::int32_t value) {
  char digits[16];
  auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  SetAttr(node, name, std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void SetBoolAttr(Out node, const char* name, bool value) {
  SetAttr(node, name, std::string_view(value ? "1" : "0"));
}

}  // namespace tessaly::xml
