#include "cli/export_json_command.hpp"

#include <iostream>
#include <memory>

#include "cli/model_json.hpp"
#include "common/document_io.hpp"

namespace tessaly::cli {

void AddExportJsonCommand(CLI::App& app, int& status) {
  struct Options {
    std::string file;
    std::optional<std::string> out;
    FacadeOptions facade;
  };
  auto options = std::make_shared<Options>();
  CLI::App* cmd = app.add_subcommand("export-json", "Write the whole model of an ECU document as JSON");
  cmd->add_option("FILE", options->file, "Document to load: a file path, file:// or http(s):// URL")->required();
  cmd->add_option("-o,--output", options->out, "JSON file to write (standard output when not given)");
  AddLoadOptions(*cmd, options->facade);
  cmd->callback([options, &status] {
    status = RunExportJson(options->file, options->out, options->facade, std::cout, std::cerr);
  });
}

int RunExportJson(const std::string& file, const std::optional<std::string>& out_file, const FacadeOptions& facade,
                  std::ostream& out, std::ostream& err) {
  std::unique_ptr<TessalyLibXml> lib = LoadDocument(facade, file, err);
  if (!lib) return 1;
  const std::string text = JsonText(ModelJson(*lib->ActiveTarget())) + "\n";
  if (!out_file) {
    out << text;
    return 0;
  }
  try {
    io::WriteFileAtomically(*out_file, text);
  } catch (const Error& error) {
    // The file helper names the document export as its source; this write is the command's own.
    PrintError(err, Error(error.Number(), "tessaly", error.Description()));
    return 1;
  }
  return 0;
}

}  // namespace tessaly::cli
