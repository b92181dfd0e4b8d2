#include "cli/convert_command.hpp"

#include <iostream>

#include "cli/console.hpp"

namespace tessaly::cli {

void AddConvertCommand(CLI::App& app, int& status) {
  struct Options {
    std::string in;
    std::string out;
    bool force = false;
    FacadeOptions facade;
  };
  auto options = std::make_shared<Options>();
  CLI::App* cmd = app.add_subcommand("convert", "Load an ECU document and save it again (path or URL in, file out)");
  cmd->add_option("IN", options->in, "Document to load: a file path, file:// or http(s):// URL")->required();
  cmd->add_option("OUT", options->out, "File to write")->required();
  cmd->add_flag("--force", options->force, "Save the partial document even when loading raised an error");
  AddFacadeOptions(*cmd, options->facade);
  cmd->callback([options, &status] {
    status = RunConvert(options->in, options->out, options->force, options->facade, std::cerr);
  });
}

void AddFacadeOptions(CLI::App& cmd, FacadeOptions& facade) {
  AddLoadOptions(cmd, facade);
  cmd.add_option("--encoding", facade.encoding, "Encoding of the written document (default UTF-8)");
  cmd.add_option("--stylesheet", facade.stylesheet, "Style sheet URL written into the document (\"\" for none)");
}

int RunConvert(const std::string& in, const std::string& out, bool force, const FacadeOptions& facade_options,
               std::ostream& err) {
  std::unique_ptr<TessalyLibXml> lib;
  try {
    lib = MakeFacade(facade_options, err);
  } catch (const Error& error) {
    PrintError(err, error);
    return 1;
  }
  int status = 0;
  try {
    lib->ImportUceFromXml(in);
  } catch (const Error& error) {
    PrintError(err, error);
    status = 1;
    if (!force || !lib->ActiveTarget()) return status;
  }
  if (!SaveDocument(*lib, out, err)) return 1;
  return status;
}

}  // namespace tessaly::cli
