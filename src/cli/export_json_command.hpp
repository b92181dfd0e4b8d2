// tessaly export-json FILE [-o OUT]: the whole document model of one ECU as JSON, for scripts
// and other tools (format in docs/json.md, JSON Schema in docs/tessaly.schema.json).
#ifndef TESSALY_SRC_CLI_EXPORT_JSON_COMMAND_HPP_
#define TESSALY_SRC_CLI_EXPORT_JSON_COMMAND_HPP_

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <optional>
#include <string>

#include "cli/console.hpp"

namespace tessaly::cli {

// Registers the command; its exit status is stored into `status` when it runs.
void AddExportJsonCommand(CLI::App& app, int& status);

// Loads `file` and writes its model as JSON to `out_file`, or on `out` when there is none.
// Warnings, event-log entries and errors go to `err`. Returns 0, or 1 when the facade could not
// be set up, the import raised an error (nothing is written then) or the file could not be
// written (an existing file is then left as it was).
int RunExportJson(const std::string& file, const std::optional<std::string>& out_file, const FacadeOptions& facade,
                  std::ostream& out, std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_EXPORT_JSON_COMMAND_HPP_
