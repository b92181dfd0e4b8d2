// tessaly info FILE: a summary of one ECU document that a person reads at a glance: the ECU,
// its function and address, its protocol with the main timings, its failure type, and how many
// data, requests, devices, tests, categories, screens, displays, buttons and
// auto-identifications it holds.
#ifndef TESSALY_SRC_CLI_INFO_COMMAND_HPP_
#define TESSALY_SRC_CLI_INFO_COMMAND_HPP_

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <string>

#include "cli/console.hpp"

namespace tessaly::cli {

// Registers the command; its exit status is stored into `status` when it runs.
void AddInfoCommand(CLI::App& app, int& status);

// Loads `file` and prints its summary on `out` (JSON when `json`); warnings, event-log entries
// and errors go to `err`. Returns 0, or 1 when the facade could not be set up or the import
// raised an error (then no summary is printed).
int RunInfo(const std::string& file, bool json, const FacadeOptions& facade, std::ostream& out, std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_INFO_COMMAND_HPP_
