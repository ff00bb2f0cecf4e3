#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "support/make_string.h"

namespace reelvane {

class Preferences;
class SystemLog;

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

/// Where messages go beside the capture file. The log sinks are the one process-wide state.
struct LogSinks {
    Preferences* preferences = nullptr;  ///< keeps a ring of the last ten messages of each level
    SystemLog* systemLog = nullptr;
    std::string appName{};
};

/// Sets the sinks, or takes them away with an empty value. What they point to must outlive them.
void log_set_sinks(const LogSinks& sinks);

/// Sends one message to the capture file, the ring in the preferences and the system's log, in this
/// order, all but the printable characters and newlines as U+FFFD. Levels 0 to 7. Any thread; never
/// fails for its caller.
void log_message(std::uint32_t level, const std::string& given);

/// The same with a format text (see makeString).
template <typename... Arguments>
void vn_log_level(std::uint32_t level, std::string_view format, const Arguments&... arguments) {
    log_message(level, makeString(format, arguments...));
}

/// Mirrors every later message into the file, made when missing. A file larger than `maxSize` bytes
/// is first cut to its last `maxSize` bytes; 0 never cuts.
void vn_log_enablecapturetofile(const std::filesystem::path& file, std::uint64_t maxSize);

/// Keeps one finished message in a ring of its own, of 43 places, in the preferences.
void log_to_prefs(std::string_view message);

}  // namespace reelvane
