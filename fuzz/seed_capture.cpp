// A preload library that records every document the unit tests parse, to build the fuzzers' seed
// corpus from the tests' own documents (see fuzz/collect-seeds.sh). It stands in front of
// pugixml's xml_document::load_buffer and load_buffer_inplace, through which every parse of the
// library and the tests goes, writes the buffer to $TESSALY_SEED_DIR under a name made from its
// content (so that a document parsed many times is kept once), and hands the call on to pugixml.
//
// Build: c++ -std=c++20 -shared -fPIC -O1 fuzz/seed_capture.cpp -o seed_capture.so -ldl
#include <dlfcn.h>
#include <pugixml.hpp>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using LoadBuffer = pugi::xml_parse_result (*)(pugi::xml_document*, const void*, std::size_t, unsigned int,
                                              pugi::xml_encoding);
using LoadBufferInPlace = pugi::xml_parse_result (*)(pugi::xml_document*, void*, std::size_t, unsigned int,
                                                     pugi::xml_encoding);

std::uint64_t Fnv1a(const unsigned char* data, std::size_t size) {
  std::uint64_t hash = 1469598103934665603ULL;
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ data[i]) * 1099511628211ULL;
  return hash;
}

void Record(const void* contents, std::size_t size) {
  const char* dir = std::getenv("TESSALY_SEED_DIR");
  if (dir == nullptr || size == 0) return;
  char name[32];
  std::snprintf(name, sizeof name, "%016llx",
                static_cast<unsigned long long>(Fnv1a(static_cast<const unsigned char*>(contents), size)));
  std::string path = std::string(dir) + "/" + name;
  if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
    std::fwrite(contents, 1, size, f);
    std::fclose(f);
  }
}

}  // namespace

pugi::xml_parse_result pugi::xml_document::load_buffer(const void* contents, std::size_t size, unsigned int options,
                                                       pugi::xml_encoding encoding) {
  static const auto next =
      reinterpret_cast<LoadBuffer>(dlsym(RTLD_NEXT, "_ZN4pugi12xml_document11load_bufferEPKvmjNS_12xml_encodingE"));
  Record(contents, size);
  return next(this, contents, size, options, encoding);
}

pugi::xml_parse_result pugi::xml_document::load_buffer_inplace(void* contents, std::size_t size, unsigned int options,
                                                               pugi::xml_encoding encoding) {
  static const auto next = reinterpret_cast<LoadBufferInPlace>(
      dlsym(RTLD_NEXT, "_ZN4pugi12xml_document19load_buffer_inplaceEPvmjNS_12xml_encodingE"));
  Record(contents, size);
  return next(this, contents, size, options, encoding);
}
