// tessaly convert IN OUT: load a document with the facade and save it again.
#ifndef TESSALY_SRC_CLI_CONVERT_COMMAND_HPP_
#define TESSALY_SRC_CLI_CONVERT_COMMAND_HPP_

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <string>

#include "cli/console.hpp"

namespace tessaly::cli {

// Registers the command; its exit status is stored into `status` when it runs.
void AddConvertCommand(CLI::App& app, int& status);

// Registers --lang, --encoding, --stylesheet, --params and --functions on `cmd`.
void AddFacadeOptions(CLI::App& cmd, FacadeOptions& facade);

// Imports `in` and exports to `out`. Returns 0 when nothing was raised, 1 when the import or
// export raised an error (OUT is then not written unless `force`) or the save failed.
int RunConvert(const std::string& in, const std::string& out, bool force, const FacadeOptions& facade,
               std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_CONVERT_COMMAND_HPP_
