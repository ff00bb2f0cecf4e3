#pragma once

#include <string>

namespace reelvane {

/// The operating system's log. Any thread.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    /// `priority` is a syslog severity, 0 (emergency) to 7 (debug).
    virtual void write(int priority, const std::string& message) = 0;
};

}  // namespace reelvane
