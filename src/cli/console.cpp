#include "cli/console.hpp"

#include <ostream>

#include "common/document_io.hpp"

namespace tessaly::cli {
namespace {

// Prints each event-log entry as "log: TEXT".
class StreamEventLog final : public EventLog {
 public:
  explicit StreamEventLog(std::ostream& out) : out_(out) {}
  void Error(const std::string& text) override { out_ << "log: " << text << '\n'; }

 private:
  std::ostream& out_;
};

}  // namespace

std::unique_ptr<TessalyLibXml> MakeFacade(const FacadeOptions& options, std::ostream& err) {
  auto lib = std::make_unique<TessalyLibXml>();
  lib->set_WarningInfo([&err](const std::string& cls, const std::string& msg) {
    err << "warning: " << cls << ": " << msg << '\n';
  });
  lib->set_EventLog(std::make_shared<StreamEventLog>(err));
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

void PrintError(std::ostream& err, const Error& error) {
  err << "error " << error.Number() << ": " << error.Source() << ": " << error.Description() << '\n';
}

}  // namespace tessaly::cli
