// Runs the tessaly executable as a user would, capturing what it prints.
#ifndef TESSALY_TESTS_CLI_CLI_SUPPORT_HPP_
#define TESSALY_TESTS_CLI_CLI_SUPPORT_HPP_

#include <string>
#include <vector>

namespace tessaly::testing {

struct CommandResult {
  int status = -1;
  std::string out;
  std::string err;
};

// Runs `tessaly` with `args` (each quoted for the shell) and returns its exit status, standard
// output and standard error.
CommandResult RunTessaly(const std::vector<std::string>& args);

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_CLI_CLI_SUPPORT_HPP_
