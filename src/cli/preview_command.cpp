#include "cli/preview_command.hpp"

#include <iostream>
#include <memory>
#include <vector>

#include "common/document_io.hpp"
#include "preview/preview.hpp"

namespace tessaly::cli {
namespace {

// Prints each event-log entry as the console does, and keeps it for the page's loading report.
class ReportingEventLog final : public EventLog {
 public:
  ReportingEventLog(std::ostream& err, std::vector<std::string>& report) : err_(err), report_(report) {}
  void Error(const std::string& text) override {
    err_ << "log: " << text << '\n';
    report_.push_back("log: " + text);
  }

 private:
  std::ostream& err_;
  std::vector<std::string>& report_;
};

std::string ErrorLine(const Error& error) {
  return "error " + std::to_string(error.Number()) + ": " + error.Source() + ": " + error.Description();
}

std::string DiagnosticLine(const Diagnostic& d) {
  std::string line = d.action == Diagnostic::Action::kDropped ? "dropped: " : "repaired: ";
  line += d.what + ": " + d.why;
  if (d.line != 0) line += " (line " + std::to_string(d.line) + ", column " + std::to_string(d.column) + ")";
  return line;
}

// Splits "CATEGORY/SCREEN" at the slash that names a screen of the document (names may hold
// slashes themselves); when none does, at the first slash, so that the error names the parts.
bool SplitScreen(const TessalyLibXml& lib, const std::string& text, std::string& category, std::string& screen) {
  bool any = false;
  for (std::size_t slash = text.find('/'); slash != std::string::npos; slash = text.find('/', slash + 1)) {
    const std::string c = text.substr(0, slash);
    const std::string s = text.substr(slash + 1);
    if (!any) {
      category = c;
      screen = s;
      any = true;
    }
    const auto& target = lib.ActiveTarget();
    if (!target || !target->Categories()) continue;
    for (const auto& item : *target->Categories())
      if (item->categoryName() == c && item->Screens() && item->Screens()->ItemName(s)) {
        category = c;
        screen = s;
        return true;
      }
  }
  return any;
}

}  // namespace

int RunPreview(const PreviewRequest& request, std::ostream& err) {
  std::unique_ptr<TessalyLibXml> lib;
  try {
    lib = MakeFacade(request.facade, err);
  } catch (const Error& error) {
    PrintError(err, error);
    return 1;
  }
  preview::PreviewOptions options;
  options.source = request.in;
  options.zoom = request.zoom;
  std::vector<std::string>& report = options.loadReport;
  lib->set_WarningInfo([&err, &report](const std::string& cls, const std::string& msg) {
    err << "warning: " << cls << ": " << msg << '\n';
    report.push_back("warning: " + cls + ": " + msg);
  });
  lib->set_EventLog(std::make_shared<ReportingEventLog>(err, report));
  lib->set_Diagnostics([&report](const Diagnostic& d) { report.push_back(DiagnosticLine(d)); });

  int status = 0;
  try {
    lib->ImportUceFromXml(request.in);
  } catch (const Error& error) {
    PrintError(err, error);
    report.push_back(ErrorLine(error));
    status = 1;
    if (!request.force || !lib->ActiveTarget()) return status;
  }
  if (!request.screen.empty() && !SplitScreen(*lib, request.screen, options.onlyCategory, options.onlyScreen)) {
    PrintError(err, Error(errc::kModel, "tessaly.preview", "--screen takes CATEGORY/SCREEN, not '" + request.screen + "'"));
    return 1;
  }
  try {
    io::WriteFileAtomically(request.out, preview::RenderPreview(*lib, options));
  } catch (const Error& error) {
    PrintError(err, error);
    return 1;
  }
  return status;
}

void AddPreviewCommand(CLI::App& app, int& status) {
  auto request = std::make_shared<PreviewRequest>();
  CLI::App* cmd = app.add_subcommand("preview", "Write a self-contained HTML page that shows an ECU document");
  cmd->add_option("FILE", request->in, "Document to load: a file path, file:// or http(s):// URL")->required();
  cmd->add_option("-o,--output", request->out, "HTML file to write")->required();
  cmd->add_flag("--force", request->force, "Write the page even when loading raised an error");
  cmd->add_option("--zoom", request->zoom, "Scale of the screen drawings (1 draws 15 twips to a pixel)")
      ->check(CLI::PositiveNumber);
  cmd->add_option("--screen", request->screen, "Show only this screen, given as CATEGORY/SCREEN");
  AddLoadOptions(*cmd, request->facade);
  cmd->callback([request, &status] { status = RunPreview(*request, std::cerr); });
}

}  // namespace tessaly::cli
