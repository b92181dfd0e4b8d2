#include "cli/console.hpp"

#include <ostream>
#include <utility>

#include "common/document_io.hpp"

namespace tessaly::cli {
namespace {

// Hands each event-log entry to a function.
class ForwardingEventLog final : public EventLog {
 public:
  explicit ForwardingEventLog(std::function<void(const std::string&)> log) : log_(std::move(log)) {}
  void Error(const std::string& text) override {
    if (log_) log_(text);
  }

 private:
  std::function<void(const std::string&)> log_;
};

}  // namespace

void AddLoadOptions(CLI::App& cmd, FacadeOptions& facade) {
  cmd.add_option("--lang", facade.lang, "Language of the reference-table names (default fr)");
  cmd.add_option("--params", facade.params, "Global parameter document to read first");
  cmd.add_option("--functions", facade.functions, "Document whose root holds the Function rows of the functions table");
}

std::unique_ptr<TessalyLibXml> MakeFacade(const FacadeOptions& options, Reporting reporting) {
  auto lib = std::make_unique<TessalyLibXml>();
  lib->set_WarningInfo(std::move(reporting.warning));
  lib->set_EventLog(std::make_shared<ForwardingEventLog>(std::move(reporting.log)));
  if (options.lang) {
    lib->set_lang(*options.lang);
    lib->ReloadDefaultParameters();
  }
  if (options.encoding) lib->set_xmlEncoding(*options.encoding);
  if (options.stylesheet) lib->set_xmlStyleSheet(*options.stylesheet);
  if (options.params) lib->ReadGlobalParameters(*options.params);
  if (options.functions) {
    pugi::xml_document doc;
    std::string reason;
    if (!io::LoadDocument(doc, *options.functions, reason))
      Raise(errc::kModel, "tessaly", "Cannot read the functions table " + *options.functions + ": " + reason);
    auto table = std::make_shared<FunctionItems>();
    table->loadXml(doc, doc.document_element());
    lib->set_functions(table);
  }
  return lib;
}

std::unique_ptr<TessalyLibXml> MakeFacade(const FacadeOptions& options, std::ostream& err) {
  Reporting reporting;
  reporting.warning = [&err](const std::string& cls, const std::string& msg) {
    err << "warning: " << cls << ": " << msg << '\n';
  };
  reporting.log = [&err](const std::string& text) { err << "log: " << text << '\n'; };
  return MakeFacade(options, std::move(reporting));
}

std::optional<Error> Import(TessalyLibXml& lib, const std::string& location) {
  try {
    lib.ImportUceFromXml(location);
  } catch (const Error& error) {
    return error;
  }
  return std::nullopt;
}

void PrintError(std::ostream& err, const Error& error) {
  err << "error " << error.Number() << ": " << error.Source() << ": " << error.Description() << '\n';
}

std::unique_ptr<TessalyLibXml> LoadDocument(const FacadeOptions& options, const std::string& location,
                                            std::ostream& err) {
  std::unique_ptr<TessalyLibXml> lib;
  try {
    lib = MakeFacade(options, err);
  } catch (const Error& error) {
    PrintError(err, error);
    return nullptr;
  }
  if (std::optional<Error> error = Import(*lib, location)) {
    PrintError(err, *error);
    return nullptr;
  }
  return lib;
}

bool SaveDocument(TessalyLibXml& lib, const std::string& path, std::ostream& err) {
  try {
    lib.ExportUceToXml(path);
  } catch (const Error& error) {
    PrintError(err, error);
    return false;
  }
  if (lib.LastSaveError()) {
    PrintError(err, *lib.LastSaveError());
    return false;
  }
  return true;
}

}  // namespace tessaly::cli
