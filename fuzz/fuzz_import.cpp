// Fuzz harness of the document import: the input is an ECU document given as bytes. What loads is
// exported again, and the export must itself be a document the library can load: a save that
// writes something unreadable would lose the user's work.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/document_io.hpp"
#include "fuzz_support.hpp"

namespace {

// The encoding of the export, picked from the input's length so that every encoding path of the
// writer is reached without spending input bytes on it.
const char* ExportEncoding(std::size_t size) {
  switch (size % 4) {
    case 1: return "windows-1252";
    case 2: return "UTF-16";
    default: return "UTF-8";
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessaly;
  std::string saved;
  bool raised = false;
  if (!fuzz::LoadAndSave(std::string_view(reinterpret_cast<const char*>(data), size), ExportEncoding(size), saved,
                         raised))
    return 0;
  pugi::xml_document again;
  std::string reason;
  if (!io::LoadDocumentText(again, saved, reason)) {
    std::fprintf(stderr, "the exported document does not load again: %s\n", reason.c_str());
    std::abort();
  }
  return 0;
}
