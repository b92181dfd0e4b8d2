// How readers deep in the document reach the facade: to raise WarningInfo, to write an entry to
// the application event log, and to tell a registered diagnostics callback which element they
// dropped or repaired. Each takes the target the reader belongs to (null when the item is not
// attached to one) and works without a facade.
#ifndef TESSALY_SRC_TARGET_REPORTING_HPP_
#define TESSALY_SRC_TARGET_REPORTING_HPP_

#include <pugixml.hpp>

#include <memory>
#include <string>

#include "tessaly/facade/tessaly_lib_xml.hpp"

namespace tessaly {

class TargetItem;

// Raises WarningInfo(LibClass, warningMsg) through the target's facade; no facade, no warning.
void Warn(const TargetItem* target, const std::string& LibClass, const std::string& warningMsg);

// Writes an error entry to the event log of the target's facade, or to the default sink.
void LogError(const TargetItem* target, const std::string& text);

// The facade of `target` when it has a diagnostics callback registered, else null. Readers test
// this before building the texts of a diagnostic, so that loading without a callback costs
// nothing:
//   if (auto facade = DiagnosticsOf(target)) facade->ReportDiagnostic(..., node, what, why);
std::shared_ptr<TessalyLibXml> DiagnosticsOf(const TargetItem* target);

}  // namespace tessaly

#endif  // TESSALY_SRC_TARGET_REPORTING_HPP_
