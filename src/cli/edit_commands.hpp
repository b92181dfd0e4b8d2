// The edits that keep an ECU document consistent: rename-data, rename-request, rename-device,
// delete-data, delete-request and delete-device. Each loads a document, applies one of the
// target's referential edits, saves the result to -o OUT or back over FILE (--in-place), and
// prints what the edit changed, counted with the where-used findings before and after it.
#ifndef TESSALY_SRC_CLI_EDIT_COMMANDS_HPP_
#define TESSALY_SRC_CLI_EDIT_COMMANDS_HPP_

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <optional>
#include <string>

#include "cli/console.hpp"

namespace tessaly::cli {

enum class Edit { kRenameData, kRenameRequest, kRenameDevice, kDeleteData, kDeleteRequest, kDeleteDevice };

struct EditRequest {
  std::string file;
  std::string name;     // the data item, request or device edited
  std::string newName;  // renames only
  std::optional<std::string> output;
  bool inPlace = false;  // exactly one of output and inPlace is given
  FacadeOptions facade;
};

// Registers the six commands; the exit status of the one that runs is stored into `status`.
void AddEditCommands(CLI::App& app, int& status);

// Loads the document, applies the edit and saves it. Returns 0, or 1 (nothing written) when the
// facade could not be set up, the import raised an error, the item is not in the document or
// the library refused the edit, or 1 when the save failed (the file is then left as it was).
int RunEdit(Edit edit, const EditRequest& request, std::ostream& out, std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_EDIT_COMMANDS_HPP_
