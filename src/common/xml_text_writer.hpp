// The text sink of the writers: XML written as it is appended, in UTF-8, without indentation,
// each top-level node followed by CR LF. The text is the one pugixml gives in raw form for a DOM
// holding the same nodes: "&amp;", "&lt;", "&gt;" (text only) and "&quot;" (attributes only),
// other control characters as "&#NN;" (tab, line feed and carriage return stay in text), an
// empty element as "<e/>", "]]>" inside CDATA split over two sections, and every text ending at
// a NUL character. The export uses it to stream a document to its file without a DOM.
#ifndef TESSALY_SRC_COMMON_XML_TEXT_WRITER_HPP_
#define TESSALY_SRC_COMMON_XML_TEXT_WRITER_HPP_

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tessaly/common/xml_out.hpp"

namespace tessaly::xml {

class TextWriter final : public Sink {
 public:
  // Receives the text in pieces of about a megabyte, in order.
  using Drain = std::function<void(std::string_view)>;

  // Without `drain` the whole text is kept and Finish returns it.
  explicit TextWriter(Drain drain = {});

  // The document: where the top-level nodes go.
  Out Document() { return Out(*this, kDocument); }
  // Closes every open element and returns the text not yet drained (all of it without a drain).
  std::string& Finish();

  Handle AppendElement(Handle parent, const char* name) override;
  void SetAttribute(Handle element, const char* name, std::string_view value) override;
  void AppendText(Handle parent, std::string_view text) override;
  void AppendCData(Handle parent, std::string_view text) override;
  void AppendProcessingInstruction(Handle parent, const char* target, std::string_view value) override;

 private:
  static constexpr Handle kDocument = 0;
  struct Open {
    Handle id = 0;
    std::string_view name;  // as given to AppendElement, which must outlive the element
    bool content = false;   // the start tag is closed by '>'
  };

  // Room for `size` more bytes at the end of the text (the text held so far goes to the drain
  // first when it does not fit); the caller writes there and adds what it wrote to used_.
  char* Room(std::size_t size);
  void Put(std::string_view text);
  void PutEscapedText(std::string_view text);

  // Closes the elements started inside `parent` and, when `parent` is an element whose start
  // tag is still open, closes the start tag. std::logic_error when `parent` is closed already.
  void EnterContent(Handle parent);
  void CloseTop();
  // After a node: the line break when it is a top-level one.
  void EndNode(Handle parent);

  Drain drain_;
  std::string buffer_;    // the text not yet drained is its first used_ bytes
  std::size_t used_ = 0;
  std::vector<Open> open_;  // open elements, outermost first
  Handle next_ = kDocument + 1;
};

}  // namespace tessaly::xml

#endif  // TESSALY_SRC_COMMON_XML_TEXT_WRITER_HPP_
