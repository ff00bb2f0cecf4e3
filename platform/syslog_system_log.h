#pragma once

#include <string>

#include "support/ports/system_log.h"

namespace reelvane {

/// The system log by syslog(3), which journald reads as well. One per process.
class SyslogSystemLog final : public SystemLog {
public:
    /// The name that the messages carry.
    explicit SyslogSystemLog(std::string programName);
    ~SyslogSystemLog() override;
    SyslogSystemLog(const SyslogSystemLog&) = delete;
    SyslogSystemLog& operator=(const SyslogSystemLog&) = delete;
    SyslogSystemLog(SyslogSystemLog&&) = delete;
    SyslogSystemLog& operator=(SyslogSystemLog&&) = delete;

    void write(int priority, const std::string& message) override;

private:
    std::string programName_;  ///< syslog keeps a pointer to it
};

}  // namespace reelvane
