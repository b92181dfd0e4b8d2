#include "support/test_support.hpp"

#include <fstream>
#include <random>
#include <sstream>

#include "common/document_io.hpp"

namespace tessaly::testing {

TempDir::TempDir() {
  std::random_device rd;
  path_ = std::filesystem::temp_directory_path() / ("tessaly-test-" + std::to_string(rd()) + std::to_string(rd()));
  std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
  std::error_code ec;
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
  std::filesystem::remove_all(path_, ec);
}

std::string ReadFileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return std::move(out).str();
}

void WriteFileBytes(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
}

void ParseText(pugi::xml_document& doc, const std::string& text) {
  std::string reason;
  ASSERT_TRUE(io::ParseUtf8(doc, text, reason)) << reason;
}

std::string NodeText(pugi::xml_node node) {
  std::ostringstream out;
  node.print(out, "", pugi::format_raw);
  return std::move(out).str();
}

}  // namespace tessaly::testing
