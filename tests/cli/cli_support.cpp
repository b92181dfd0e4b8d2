#include "cli/cli_support.hpp"

#include <sys/wait.h>

#include <cstdlib>

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

}  // namespace tessaly::testing
