#include "platform/syslog_system_log.h"

#include <algorithm>
#include <syslog.h>
#include <utility>

namespace reelvane {

SyslogSystemLog::SyslogSystemLog(std::string programName) : programName_(std::move(programName)) {
    ::openlog(programName_.c_str(), LOG_PID, LOG_USER);
}

SyslogSystemLog::~SyslogSystemLog() {
    ::closelog();
}

void SyslogSystemLog::write(int priority, const std::string& message) {
    ::syslog(std::clamp(priority, LOG_EMERG, LOG_DEBUG), "%s", message.c_str());
}

}  // namespace reelvane
