#include "tessaly/common/event_log.hpp"

#include <syslog.h>

namespace tessaly {

void SyslogEventLog::Error(const std::string& text) {
  ::syslog(LOG_USER | LOG_ERR, "tessaly: %s", text.c_str());
}

std::shared_ptr<EventLog> DefaultEventLog() {
  static const std::shared_ptr<EventLog> sink = std::make_shared<SyslogEventLog>();
  return sink;
}

}  // namespace tessaly
