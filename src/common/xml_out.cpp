#include "tessaly/common/xml_out.hpp"

namespace tessaly::xml {
namespace {

// Writing into a pugixml DOM: a handle is the address of a pugixml node.
class DomSink final : public Sink {
 public:
  static Handle Of(pugi::xml_node node) { return reinterpret_cast<Handle>(node.internal_object()); }
  static pugi::xml_node Node(Handle handle) {
    return pugi::xml_node(reinterpret_cast<pugi::xml_node_struct*>(handle));
  }

  Handle AppendElement(Handle parent, const char* name) override { return Of(Node(parent).append_child(name)); }
  void SetAttribute(Handle element, const char* name, std::string_view value) override {
    pugi::xml_node node = Node(element);
    pugi::xml_attribute a = node.attribute(name);
    if (!a) a = node.append_attribute(name);
    a.set_value(value.data(), value.size());
  }
  void AppendText(Handle parent, std::string_view text) override {
    Node(parent).append_child(pugi::node_pcdata).set_value(text.data(), text.size());
  }
  void AppendCData(Handle parent, std::string_view text) override {
    Node(parent).append_child(pugi::node_cdata).set_value(text.data(), text.size());
  }
  void AppendProcessingInstruction(Handle parent, const char* target, std::string_view value) override {
    pugi::xml_node pi = Node(parent).append_child(pugi::node_pi);
    pi.set_name(target);
    pi.set_value(value.data(), value.size());
  }
};

DomSink dom_sink;

}  // namespace

Out::Out(pugi::xml_node node) : sink_(&dom_sink), handle_(DomSink::Of(node)) {}

}  // namespace tessaly::xml
