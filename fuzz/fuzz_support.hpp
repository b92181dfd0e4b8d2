// What the fuzz harnesses share: a facade that keeps quiet (no syslog entries, warnings and
// diagnostics consumed in memory), so that a fuzzing run touches nothing outside the process.
#ifndef TESSALY_FUZZ_FUZZ_SUPPORT_HPP_
#define TESSALY_FUZZ_FUZZ_SUPPORT_HPP_

#include <cstddef>
#include <memory>
#include <string>

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

}  // namespace tessaly::fuzz

#endif  // TESSALY_FUZZ_FUZZ_SUPPORT_HPP_
