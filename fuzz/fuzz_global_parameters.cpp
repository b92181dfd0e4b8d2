// Fuzz harness of the global parameters: the input is a parameter document, read through
// ReadGlobalParameters as a host reads one from a file. The file is an anonymous in-memory file,
// so a fuzzing run writes nothing to disk.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_support.hpp"

namespace {

// An anonymous memory file holding `data`, reachable by the path /proc/self/fd/N.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* data, std::size_t size) : fd_(::memfd_create("parameters", MFD_CLOEXEC)) {
    std::size_t written = 0;
    while (fd_ >= 0 && written < size) {
      ssize_t n = ::write(fd_, data + written, size - written);
      if (n <= 0) break;
      written += static_cast<std::size_t>(n);
    }
  }
  ~MemoryFile() {
    if (fd_ >= 0) ::close(fd_);
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  bool ok() const { return fd_ >= 0; }
  std::string Path() const { return "/proc/self/fd/" + std::to_string(fd_); }

 private:
  int fd_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessaly;
  MemoryFile file(data, size);
  if (!file.ok()) return 0;
  auto lib = fuzz::QuietFacade();
  // The language decides which Name child is picked; both paths of the pick are wanted.
  lib->set_lang(size % 2 == 0 ? "fr" : "en");
  try {
    lib->ReadGlobalParameters(file.Path());
  } catch (const Error&) {
    // Refused documents and entries without a number are expected outcomes.
  }
  // Whatever the tables hold now must answer look-ups.
  if (const auto& protocols = lib->protocols()) {
    for (const auto& p : *protocols) {
      (void)protocols->ItemName(p->protocolName());
      (void)protocols->ItemId(p->code());
    }
  }
  if (const auto& pannes = lib->Pannes()) {
    for (const auto& f : *pannes) (void)pannes->ItemId(f->id());
  }
  if (const auto& types = lib->typeOrganes()) {
    for (const auto& t : *types) (void)types->ItemName(t->libelle());
  }
  return 0;
}
