#include "cli/check_command.hpp"

#include <nlohmann/json.hpp>

#include <iostream>
#include <variant>
#include <vector>

#include "cli/diff_command.hpp"
#include "cli/model_json.hpp"

namespace tessaly::cli {
namespace {

struct Warning {
  std::string libClass;
  std::string message;
};
struct LogEntry {
  std::string text;
};

// Everything the facade reported while loading, in the order it came.
using Event = std::variant<Warning, LogEntry, Diagnostic>;

const char* ActionName(Diagnostic::Action action) {
  return action == Diagnostic::Action::kDropped ? "dropped" : "repaired";
}

// What saving the loaded document would do: the differences between the model as loaded and
// the model its save loads as, or the error that stops the save (or the load of the save).
struct OnSaving {
  std::vector<ModelChange> changes;
  std::optional<Error> error;
};

struct Report {
  std::string file;
  std::vector<Event> events;
  std::optional<Error> error;
  int dropped = 0;
  int repaired = 0;
  OnSaving onSaving;

  // Whether the document loads as written. What its save changes does not count: the file
  // itself is read as it is, and the changes are listed apart.
  bool Clean() const { return dropped == 0 && repaired == 0 && !error; }
};

// Saves the active target of `lib` in memory, loads the save into a facade of its own set up
// from `options` (whose warnings and log entries are not the document's and are not shown) and
// saves that again. Only when the two saves differ are the two models compared: their JSON forms
// take several times the memory of the models, which a large document that saves back the same
// is spared.
OnSaving SaveAndLoadAgain(TessalyLibXml& lib, const FacadeOptions& options) {
  OnSaving result;
  try {
    const std::string saved = lib.ExportUceToText();
    auto again = MakeFacade(options, Reporting{[](const std::string&, const std::string&) {}, [](const std::string&) {}});
    again->ImportUceFromText(saved);
    if (again->ExportUceToText() == saved) return result;
    result.changes = CompareModels(ModelJson(*lib.ActiveTarget()), ModelJson(*again->ActiveTarget()));
  } catch (const Error& error) {
    result.error = error;
  }
  return result;
}

// The summary's account of the save: "" when it keeps everything.
std::string SavingSummary(const OnSaving& onSaving) {
  if (onSaving.error) return "; the save fails";
  if (onSaving.changes.empty()) return "";
  const std::size_t n = onSaving.changes.size();
  return "; " + std::to_string(n) + (n == 1 ? " change" : " changes") + " on saving";
}

// "FILE:LINE:COLUMN: dropped: WHAT: WHY", the position left out when it is unknown.
void PrintDiagnostic(std::ostream& out, const std::string& file, const Diagnostic& d) {
  out << file;
  if (d.line != 0) out << ':' << d.line << ':' << d.column;
  out << ": " << ActionName(d.action) << ": " << d.what << ": " << d.why << '\n';
}

void PrintText(const Report& report, std::ostream& out) {
  for (const Event& event : report.events) {
    if (const auto* w = std::get_if<Warning>(&event)) out << "warning: " << w->libClass << ": " << w->message << '\n';
    else if (const auto* l = std::get_if<LogEntry>(&event)) out << "log: " << l->text << '\n';
    else PrintDiagnostic(out, report.file, std::get<Diagnostic>(event));
  }
  if (report.error) PrintError(out, *report.error);
  for (const ModelChange& change : report.onSaving.changes)
    out << report.file << ": on saving: " << ChangeLine(change) << '\n';
  if (report.onSaving.error) {
    out << report.file << ": on saving: ";
    PrintError(out, *report.onSaving.error);
  }
  out << report.file << ": ";
  if (report.Clean()) {
    out << "nothing dropped or repaired";
  } else {
    out << report.dropped << " dropped, " << report.repaired << " repaired";
    if (report.error) out << ", the import raised error " << report.error->Number();
  }
  out << SavingSummary(report.onSaving) << '\n';
}

nlohmann::ordered_json ErrorJson(const std::optional<Error>& error) {
  if (!error) return nullptr;
  return {{"number", error->Number()}, {"source", error->Source()}, {"description", error->Description()}};
}

nlohmann::ordered_json ToJson(const Report& report) {
  nlohmann::ordered_json j;
  j["file"] = report.file;
  j["clean"] = report.Clean();
  j["dropped"] = report.dropped;
  j["repaired"] = report.repaired;
  j["diagnostics"] = nlohmann::ordered_json::array();
  j["warnings"] = nlohmann::ordered_json::array();
  j["log"] = nlohmann::ordered_json::array();
  for (const Event& event : report.events) {
    if (const auto* w = std::get_if<Warning>(&event)) {
      j["warnings"].push_back({{"libClass", w->libClass}, {"message", w->message}});
    } else if (const auto* l = std::get_if<LogEntry>(&event)) {
      j["log"].push_back(l->text);
    } else {
      const auto& d = std::get<Diagnostic>(event);
      nlohmann::ordered_json entry = {{"action", ActionName(d.action)}};
      entry["line"] = d.line != 0 ? nlohmann::ordered_json(d.line) : nlohmann::ordered_json(nullptr);
      entry["column"] = d.line != 0 ? nlohmann::ordered_json(d.column) : nlohmann::ordered_json(nullptr);
      entry["what"] = d.what;
      entry["why"] = d.why;
      j["diagnostics"].push_back(entry);
    }
  }
  j["error"] = ErrorJson(report.error);
  nlohmann::ordered_json changes = nlohmann::ordered_json::array();
  for (const ModelChange& change : report.onSaving.changes) changes.push_back(ChangeJson(change));
  j["onSaving"] = {{"changes", changes}, {"error", ErrorJson(report.onSaving.error)}};
  return j;
}

}  // namespace

void AddCheckCommand(CLI::App& app, int& status) {
  struct Options {
    std::string file;
    bool json = false;
    FacadeOptions facade;
  };
  auto options = std::make_shared<Options>();
  CLI::App* cmd = app.add_subcommand(
      "check",
      "Load an ECU document, list every element dropped or repaired (exit 1 when there is any) and what saving it "
      "would change");
  cmd->add_option("FILE", options->file, "Document to load: a file path, file:// or http(s):// URL")->required();
  cmd->add_flag("--json", options->json, "Print JSON instead of text");
  AddLoadOptions(*cmd, options->facade);
  cmd->callback([options, &status] {
    status = RunCheck(options->file, options->json, options->facade, std::cout, std::cerr);
  });
}

int RunCheck(const std::string& file, bool json, const FacadeOptions& facade, std::ostream& out, std::ostream& err) {
  Report report;
  report.file = file;
  // Only what loading reports is the document's; the save that follows warns about itself.
  bool loading = true;
  Reporting reporting;
  reporting.warning = [&report, &loading](const std::string& cls, const std::string& msg) {
    if (loading) report.events.emplace_back(Warning{cls, msg});
  };
  reporting.log = [&report, &loading](const std::string& text) {
    if (loading) report.events.emplace_back(LogEntry{text});
  };
  std::unique_ptr<TessalyLibXml> lib;
  try {
    lib = MakeFacade(facade, std::move(reporting));
  } catch (const Error& error) {
    PrintError(err, error);
    return 1;
  }
  lib->set_Diagnostics([&report](const Diagnostic& d) {
    ++(d.action == Diagnostic::Action::kDropped ? report.dropped : report.repaired);
    report.events.emplace_back(d);
  });
  report.error = Import(*lib, file);
  loading = false;
  lib->set_Diagnostics(nullptr);
  if (lib->ActiveTarget()) report.onSaving = SaveAndLoadAgain(*lib, facade);
  if (json) out << ToJson(report).dump(2) << '\n';
  else PrintText(report, out);
  return report.Clean() ? 0 : 1;
}

}  // namespace tessaly::cli
