#pragma once

#include <cstdint>
#include <string>

namespace reelvane {

/// The eight severities of syslog.
enum LogLevel : std::uint32_t {
    LogEmergency = 0,
    LogAlert = 1,
    LogCritical = 2,
    LogError = 3,
    LogWarning = 4,
    LogNotice = 5,
    LogInfo = 6,
    LogDebug = 7
};

/// The operating system's log. Any thread.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    /// `priority` is a syslog severity, 0 (emergency) to 7 (debug).
    virtual void write(int priority, const std::string& message) = 0;
};

}  // namespace reelvane
