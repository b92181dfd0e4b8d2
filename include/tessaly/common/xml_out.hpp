// Where the writers of the model put what they write. Every createXMLnode writes through an
// xml::Out: a place in a sink, either an element of a pugixml DOM (an xml::Out converts from a
// pugi::xml_node) or an element of the text writer that the export uses to stream a document to
// its file without building a DOM first.
//
// A writer appends elements, attributes and text in document order. A DOM would also accept
// an attribute set late, or a child appended to an element after its next sibling; a text sink
// writes each call as it comes, so a writer sets every attribute of an element before it
// appends anything inside it, and appends to an element only while no element after it has been
// started outside of it. A text sink refuses any other order with std::logic_error.
#ifndef TESSALY_COMMON_XML_OUT_HPP_
#define TESSALY_COMMON_XML_OUT_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <string_view>

namespace tessaly::xml {

class Sink {
 public:
  // Identifies a node of the sink: the document, or an element.
  using Handle = std::uintptr_t;

  virtual ~Sink() = default;

  // Appends an element named `name` inside `parent` and returns it.
  virtual Handle AppendElement(Handle parent, const char* name) = 0;
  // Sets attribute `name` of `element` (into a DOM: appended, or replaced when present).
  virtual void SetAttribute(Handle element, const char* name, std::string_view value) = 0;
  // Appends text (escaped when written) inside `parent`.
  virtual void AppendText(Handle parent, std::string_view text) = 0;
  // Appends a CDATA section inside `parent`.
  virtual void AppendCData(Handle parent, std::string_view text) = 0;
  // Appends the processing instruction <?target value?> inside `parent`.
  virtual void AppendProcessingInstruction(Handle parent, const char* target, std::string_view value) = 0;
};

// A node of a sink.
class Out {
 public:
  // The DOM node itself (a document or an element). Writing into an empty node does nothing,
  // as pugixml does.
  Out(pugi::xml_node node);  // NOLINT(google-explicit-constructor): every DOM node is a place to write
  Out(Sink& sink, Sink::Handle handle) : sink_(&sink), handle_(handle) {}

  Sink& sink() const noexcept { return *sink_; }
  Sink::Handle handle() const noexcept { return handle_; }

 private:
  Sink* sink_;
  Sink::Handle handle_;
};

}  // namespace tessaly::xml

#endif  // TESSALY_COMMON_XML_OUT_HPP_
