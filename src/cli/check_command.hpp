// tessaly check FILE: loads an ECU document and reports every element the loader dropped or
// repaired (with its line and column, what it was and why), every warning and event-log entry,
// and the error the import raised; then what saving the loaded document would change (the
// differences between its model and the model its save loads as). The exit status tells whether
// the document loads clean, so that the check can gate a CI pipeline.
#ifndef TESSALY_SRC_CLI_CHECK_COMMAND_HPP_
#define TESSALY_SRC_CLI_CHECK_COMMAND_HPP_

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <string>

#include "cli/console.hpp"

namespace tessaly::cli {

// Registers the command; its exit status is stored into `status` when it runs.
void AddCheckCommand(CLI::App& app, int& status);

// Loads `file`, saves it in memory and loads the save, and prints the report on `out` (JSON when
// `json`). Returns 0 when nothing was dropped or repaired and the import raised no error, else 1.
// A facade that cannot be set up (unreadable --params or --functions document) is printed on
// `err` and gives 1.
int RunCheck(const std::string& file, bool json, const FacadeOptions& facade, std::ostream& out, std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_CHECK_COMMAND_HPP_
