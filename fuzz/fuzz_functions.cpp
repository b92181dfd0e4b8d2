// Fuzz harness of the functions table: the input is a document whose root element holds the
// Function rows, read as a host reads its table. The table is written back, read again, and then
// serves the import of a small ECU whose function is the first row's name, as in real use.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "common/document_io.hpp"
#include "common/xml_util.hpp"
#include "fuzz_support.hpp"

namespace {

std::string XmlEscaped(std::string_view text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '"': out += "&quot;"; break;
      default: out.push_back(c);
    }
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessaly;
  pugi::xml_document doc;
  std::string reason;
  if (!io::LoadDocumentText(doc, std::string_view(reinterpret_cast<const char*>(data), size), reason)) return 0;
  auto table = std::make_shared<FunctionItems>();
  table->loadXml(doc, doc.document_element());
  Err().Clear();

  // Written back, the table must read again into as many rows.
  pugi::xml_document out;
  pugi::xml_node root = out.append_child("Functions");
  table->createXMLnode(out, root);
  const std::string text = io::Serialize(out, "UTF-8");
  pugi::xml_document again;
  if (!io::LoadDocumentText(again, text, reason)) {
    std::fprintf(stderr, "the written table does not load again: %s\n", reason.c_str());
    std::abort();
  }
  FunctionItems reread;
  reread.loadXml(again, again.document_element());
  Err().Clear();
  if (reread.Count() != table->Count()) {
    std::fprintf(stderr, "the written table reads back with %d rows instead of %d\n", reread.Count(), table->Count());
    std::abort();
  }

  // Look-ups, and the table in use by an import.
  for (const auto& row : *table) {
    (void)table->ItemName(row->functionName());
    (void)table->ItemAddress(row->Address());
  }
  auto lib = fuzz::QuietFacade();
  lib->set_functions(table);
  std::string name = table->Count() > 0 ? table->Item(1)->functionName() : std::string("F");
  std::string ecu = "<xml><tsl:Target Name=\"E\"><Function Name=\"" + XmlEscaped(name) +
                    "\"/>\n<CAN BaudRate=\"500000\" Multipoint=\"1\">\n<SendId>\n<CANId Value=\"1792\"/>\n</SendId>"
                    "<ReceiveId>\n<CANId Value=\"1800\" Extended=\"1\"/>\n</ReceiveId></CAN></tsl:Target></xml>";
  try {
    lib->ImportUceFromText(ecu);
    (void)lib->ExportUceToText();
  } catch (const Error&) {
    // A name the table does not hold is an expected refusal.
  }
  return 0;
}
