// Fuzz harness of saving and loading again: the input is an ECU document given as bytes. What
// loads is saved (s1), the save is loaded and saved again (s2), and once more (s3). A save must
// load without an error, and saving must settle by the second round: s2 and s3 are the same
// bytes. (s1 and s2 may differ: a repair made while loading the input, and a few values the
// format keeps on purpose in a form that reads back differently, change the second load; see
// docs/reliability.md.) A document that does not settle would change a little more at every
// save, without anybody editing it.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz_support.hpp"

namespace {

[[noreturn]] void Fail(const char* what, const std::string& before, const std::string& after) {
  std::fprintf(stderr, "%s\n--- first\n%s\n--- second\n%s\n", what, before.c_str(), after.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tessaly::fuzz::LoadAndSave;
  std::string first, second, third;
  bool raised = false;
  if (!LoadAndSave(std::string_view(reinterpret_cast<const char*>(data), size), "UTF-8", first, raised)) return 0;
  if (!LoadAndSave(first, "UTF-8", second, raised) || raised)
    Fail("a saved document does not load cleanly", first, second);
  if (!LoadAndSave(second, "UTF-8", third, raised) || raised)
    Fail("a saved document does not load cleanly", second, third);
  if (second != third) Fail("saving does not settle by the second round", second, third);
  return 0;
}
