// What every command shares: a facade set up from the common options, and the diagnostics it
// prints on standard error, one per line:
//   warning: LIBCLASS: MESSAGE        for each WarningInfo event
//   log: TEXT                         for each application event-log entry
//   error NUMBER: SOURCE: DESCRIPTION for an error raised by the library
#ifndef TESSALY_SRC_CLI_CONSOLE_HPP_
#define TESSALY_SRC_CLI_CONSOLE_HPP_

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "tessaly/tessaly.hpp"

namespace tessaly::cli {

// Options that shape the facade, shared by the commands that load documents.
struct FacadeOptions {
  std::optional<std::string> lang;
  std::optional<std::string> encoding;
  std::optional<std::string> stylesheet;
  std::optional<std::string> params;     // a global parameter document to read first
  std::optional<std::string> functions;  // a document whose root's Function children are the functions table
};

// Makes a facade whose warnings and event-log entries go to `err`, and applies `options`.
// Throws Error when the parameter or functions document cannot be read.
std::unique_ptr<TessalyLibXml> MakeFacade(const FacadeOptions& options, std::ostream& err);

// Prints "error NUMBER: SOURCE: DESCRIPTION".
void PrintError(std::ostream& err, const Error& error);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_CONSOLE_HPP_
