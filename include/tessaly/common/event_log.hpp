// The application event log: where readers that drop a damaged element leave an error entry.
// The facade owns one sink; by default it writes to syslog, and a host (or a test) can install
// its own.
#ifndef TESSALY_COMMON_EVENT_LOG_HPP_
#define TESSALY_COMMON_EVENT_LOG_HPP_

#include <memory>
#include <string>

namespace tessaly {

class EventLog {
 public:
  virtual ~EventLog() = default;
  // Writes one entry of type error.
  virtual void Error(const std::string& text) = 0;
};

// Writes entries to syslog with priority LOG_ERR under the identity "tessaly".
class SyslogEventLog final : public EventLog {
 public:
  void Error(const std::string& text) override;
};

// The process-wide syslog sink, used where no facade is reachable.
std::shared_ptr<EventLog> DefaultEventLog();

}  // namespace tessaly

#endif  // TESSALY_COMMON_EVENT_LOG_HPP_
