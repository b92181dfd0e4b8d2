// tessaly-generate SEED SIZE OUT: writes a synthetic ECU document of about SIZE bytes (a plain
// number, or one ending in k, M or G for kilo-, mega- or gigabytes of 1024 units) generated
// from SEED to the file OUT.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>

#include "ecu_generator.hpp"

namespace {

bool ParseSize(const std::string& text, std::size_t& size) {
  if (text.empty()) return false;
  std::size_t used = 0;
  unsigned long long value = 0;
  try {
    value = std::stoull(text, &used, 10);
  } catch (const std::exception&) {
    return false;
  }
  std::string unit = text.substr(used);
  unsigned long long scale = 1;
  if (unit == "k" || unit == "K") scale = 1024ULL;
  else if (unit == "M") scale = 1024ULL * 1024ULL;
  else if (unit == "G") scale = 1024ULL * 1024ULL * 1024ULL;
  else if (!unit.empty()) return false;
  size = static_cast<std::size_t>(value * scale);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: tessaly-generate SEED SIZE OUT\n"
                 "  SEED  an unsigned integer; the same seed and size give the same document\n"
                 "  SIZE  approximate size in bytes, optionally with a k, M or G suffix (1024 units)\n"
                 "  OUT   the file to write\n";
    return 2;
  }
  std::uint64_t seed = 0;
  try {
    std::size_t used = 0;
    seed = std::stoull(argv[1], &used, 10);
    if (argv[1][used] != '\0') throw std::invalid_argument("seed");
  } catch (const std::exception&) {
    std::cerr << "tessaly-generate: SEED must be an unsigned integer: " << argv[1] << "\n";
    return 2;
  }
  std::size_t size = 0;
  if (!ParseSize(argv[2], size)) {
    std::cerr << "tessaly-generate: SIZE must be a number of bytes, optionally with k, M or G: " << argv[2] << "\n";
    return 2;
  }
  try {
    const std::string document = tessaly::bench::GenerateEcuDocument(seed, size);
    std::ofstream out(argv[3], std::ios::binary | std::ios::trunc);
    out.write(document.data(), static_cast<std::streamsize>(document.size()));
    out.close();
    if (!out) {
      std::cerr << "tessaly-generate: cannot write " << argv[3] << "\n";
      return 1;
    }
    std::cout << document.size() << " bytes written to " << argv[3] << "\n";
  } catch (const std::exception& error) {
    std::cerr << "tessaly-generate: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
