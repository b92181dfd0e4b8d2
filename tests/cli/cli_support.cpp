#include "cli/cli_support.hpp"

#include <algorithm>
#include <filesystem>

#include "support/test_support.hpp"

namespace tessaly::testing {

CommandResult RunTessaly(const std::vector<std::string>& args) { return RunProgram(TESSALY_CLI_PATH, args); }

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
