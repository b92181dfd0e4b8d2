// Runs the tessaly executable as a user would, capturing what it prints.
#ifndef TESSALY_TESTS_CLI_CLI_SUPPORT_HPP_
#define TESSALY_TESTS_CLI_CLI_SUPPORT_HPP_

#include <cstddef>
#include <string>
#include <vector>

#include "support/test_support.hpp"

namespace tessaly::testing {

// Runs `tessaly` with `args` (each quoted for the shell) and returns its exit status, standard
// output and standard error.
CommandResult RunTessaly(const std::vector<std::string>& args);

// The path of a sample document of the examples folder ("engine-ecu.xml").
std::string SamplePath(const std::string& name);

// The warning every document load prints on standard error, with its line feed:
// "warning: TessalyDatabase: Loading url : LOCATION".
std::string LoadingWarning(const std::string& location);

// `text` with its first `from` replaced by `to`; a test failure when `from` does not occur.
std::string ReplaceOnce(const std::string& text, const std::string& from, const std::string& to);

// The 1-based line of the first occurrence of `marker` in `text`; 0 (and a test failure) when
// it does not occur.
std::size_t LineOf(const std::string& text, const std::string& marker);

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_CLI_CLI_SUPPORT_HPP_
