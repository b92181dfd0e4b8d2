#include "target/reporting.hpp"

#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

std::shared_ptr<TessalyLibXml> FacadeOf(const TargetItem* target) {
  return target != nullptr ? target->parent() : nullptr;
}

}  // namespace

void Warn(const TargetItem* target, const std::string& LibClass, const std::string& warningMsg) {
  if (auto facade = FacadeOf(target)) facade->RaiseWarningInfo(LibClass, warningMsg);
}

void LogError(const TargetItem* target, const std::string& text) {
  auto facade = FacadeOf(target);
  std::shared_ptr<EventLog> sink = facade && facade->EventLog() ? facade->EventLog() : DefaultEventLog();
  sink->Error(text);
}

std::shared_ptr<TessalyLibXml> DiagnosticsOf(const TargetItem* target) {
  auto facade = FacadeOf(target);
  return facade && facade->HasDiagnostics() ? facade : nullptr;
}

}  // namespace tessaly
