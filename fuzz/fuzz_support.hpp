// What the fuzz harnesses share: a facade that keeps quiet (no syslog entries, warnings and
// diagnostics consumed in memory), so that a fuzzing run touches nothing outside the process.
#ifndef TESSALY_FUZZ_FUZZ_SUPPORT_HPP_
#define TESSALY_FUZZ_FUZZ_SUPPORT_HPP_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/tessaly.hpp"

namespace tessaly::fuzz {

// An event-log sink that only counts its entries.
class CountingEventLog : public EventLog {
 public:
  void Error(const std::string& text) override { bytes += text.size(); }
  std::size_t bytes = 0;
};

// A facade whose warnings, event-log entries and drop/repair diagnostics all stay in memory.
// The callbacks read every field they are given, so that a report pointing at freed memory or
// holding a bad position shows up under the sanitizers.
inline std::unique_ptr<TessalyLibXml> QuietFacade() {
  auto lib = std::make_unique<TessalyLibXml>();
  lib->set_EventLog(std::make_shared<CountingEventLog>());
  lib->set_WarningInfo([](const std::string& cls, const std::string& msg) {
    volatile std::size_t sink = cls.size() + msg.size();
    (void)sink;
  });
  lib->set_Diagnostics([](const Diagnostic& d) {
    volatile std::size_t sink = d.what.size() + d.why.size() + d.line + d.column;
    (void)sink;
  });
  return lib;
}

// Loads `text` into a fresh quiet facade that saves in `encoding`, and saves what loaded into
// `saved`. False when nothing loaded or the save was refused (a character the encoding cannot
// hold in a name); `raised` tells whether the import raised an error (a refused or partly read
// document is an expected outcome: what was read stays active).
inline bool LoadAndSave(std::string_view text, const char* encoding, std::string& saved, bool& raised) {
  auto lib = QuietFacade();
  lib->set_xmlEncoding(encoding);
  raised = false;
  try {
    lib->ImportUceFromText(text);
  } catch (const Error&) {
    raised = true;
  }
  if (!lib->ActiveTarget()) return false;
  try {
    saved = lib->ExportUceToText();
  } catch (const Error&) {
    return false;
  }
  return true;
}

}  // namespace tessaly::fuzz

#endif  // TESSALY_FUZZ_FUZZ_SUPPORT_HPP_
