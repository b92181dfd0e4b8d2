// The tessaly command line: open, check, convert and query ECU documents from the shell.
#include <CLI/CLI.hpp>

#include "cli/check_command.hpp"
#include "cli/convert_command.hpp"
#include "cli/edit_commands.hpp"
#include "cli/diff_command.hpp"
#include "cli/export_json_command.hpp"
#include "cli/info_command.hpp"
#include "cli/params_command.hpp"
#include "cli/preview_command.hpp"
#include "cli/where_used_command.hpp"

int main(int argc, char** argv) {
  CLI::App app{"tessaly: read, check and write ECU diagnostic descriptions"};
  app.require_subcommand(1);
  int status = 0;
  tessaly::cli::AddConvertCommand(app, status);
  tessaly::cli::AddInfoCommand(app, status);
  tessaly::cli::AddCheckCommand(app, status);
  tessaly::cli::AddParamsCommand(app, status);
  tessaly::cli::AddPreviewCommand(app, status);
  tessaly::cli::AddWhereUsedCommand(app, status);
  tessaly::cli::AddEditCommands(app, status);
  tessaly::cli::AddExportJsonCommand(app, status);
  tessaly::cli::AddDiffCommand(app, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    int code = app.exit(e);
    // --help is a success; every other parse failure is a usage error.
    return code == 0 ? 0 : 2;
  }
  return status;
}
