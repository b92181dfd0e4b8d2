#include "cli/cli_support.hpp"

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "support/test_support.hpp"

namespace tessaly::testing {
namespace {

std::string Quote(const std::string& arg) {
  std::string q = "'";
  for (char c : arg) {
    if (c == '\'') q += "'\\''";
    else q += c;
  }
  return q + "'";
}

}  // namespace

CommandResult RunTessaly(const std::vector<std::string>& args) {
  TempDir dir;
  std::string command = Quote(TESSALY_CLI_PATH);
  for (const std::string& arg : args) command += " " + Quote(arg);
  command += " >" + Quote(dir.File("out")) + " 2>" + Quote(dir.File("err")) + " </dev/null";
  CommandResult result;
  int raw = std::system(command.c_str());
  result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  result.out = ReadFileBytes(dir.File("out"));
  result.err = ReadFileBytes(dir.File("err"));
  return result;
}

std::string SamplePath(const std::string& name) {
  return (std::filesystem::path(TESSALY_TEST_DOCUMENTS).parent_path().parent_path() / "examples" / name).string();
}

std::string LoadingWarning(const std::string& location) {
  return "warning: TessalyDatabase: Loading url : " + location + "\n";
}

std::string ReplaceOnce(const std::string& text, const std::string& from, const std::string& to) {
  std::size_t at = text.find(from);
  if (at == std::string::npos) {
    ADD_FAILURE() << "not in the document: " << from;
    return text;
  }
  return text.substr(0, at) + to + text.substr(at + from.size());
}

std::size_t LineOf(const std::string& text, const std::string& marker) {
  std::size_t at = text.find(marker);
  if (at == std::string::npos) {
    ADD_FAILURE() << "not in the document: " << marker;
    return 0;
  }
  return 1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

}  // namespace tessaly::testing
