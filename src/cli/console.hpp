// What every command shares: a facade set up from the common options, the options themselves,
// and the diagnostics printed on standard error, one per line:
//   warning: LIBCLASS: MESSAGE        for each WarningInfo event
//   log: TEXT                         for each application event-log entry
//   error NUMBER: SOURCE: DESCRIPTION for an error raised by the library
#ifndef TESSALY_SRC_CLI_CONSOLE_HPP_
#define TESSALY_SRC_CLI_CONSOLE_HPP_

#include <CLI/CLI.hpp>

#include <functional>
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

// Where a facade's warnings and event-log entries go.
struct Reporting {
  TessalyLibXml::WarningHandler warning;
  std::function<void(const std::string& text)> log;
};

// Registers --lang, --params and --functions, the options that change how a document loads.
void AddLoadOptions(CLI::App& cmd, FacadeOptions& facade);

// Makes a facade that reports through `reporting`, and applies `options`. Throws Error when the
// parameter or functions document cannot be read.
std::unique_ptr<TessalyLibXml> MakeFacade(const FacadeOptions& options, Reporting reporting);

// The same, printing warnings and event-log entries on `err`, one per line.
std::unique_ptr<TessalyLibXml> MakeFacade(const FacadeOptions& options, std::ostream& err);

// Imports `location` into a new active target of `lib`; returns the error the import raised,
// if any (the partial document then stays active, as the library leaves it).
std::optional<Error> Import(TessalyLibXml& lib, const std::string& location);

// Prints "error NUMBER: SOURCE: DESCRIPTION".
void PrintError(std::ostream& err, const Error& error);

// Makes a facade (MakeFacade) and imports `location` into it. Returns null when either raised
// an error, after printing it on `err`.
std::unique_ptr<TessalyLibXml> LoadDocument(const FacadeOptions& options, const std::string& location,
                                            std::ostream& err);

// Saves the active target to `path`. Returns false when the export raised an error or the save
// failed (reported by the library through its warning and LastSaveError), after printing the
// error on `err`.
bool SaveDocument(TessalyLibXml& lib, const std::string& path, std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_CONSOLE_HPP_
