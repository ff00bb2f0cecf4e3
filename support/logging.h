#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "support/make_string.h"
#include "support/ports/system_log.h"

namespace reelvane {

class Preferences;

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

/// The file that mirrors the log, or none. Any thread; logs nothing itself.
class LogCapture {
public:
    LogCapture() = default;
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    LogCapture(LogCapture&&) = delete;
    LogCapture& operator=(LogCapture&&) = delete;

    /// Makes the file when it is missing, cuts one larger than `maxSize` bytes (0: never) to its
    /// end, and appends to it from now on. False: it cannot be opened, and nothing is captured.
    bool open(const std::filesystem::path& file, std::uint64_t maxSize);

    /// Appends one line. Answers the line, its odd bytes replaced, when it is not UTF-8 and so was
    /// not written.
    std::optional<std::string> append(std::uint32_t level, std::string_view appName,
                                      std::string_view message);

private:
    std::mutex mutex_;
    int file_ = -1;
};

/// What a program printed, however much that is: whole up to four parts, and of more the first part
/// and at least the last one, with a line between them that says how much was left out.
class BoundedText {
public:
    static constexpr std::size_t kPart = std::size_t{1} << 20U;  ///< bytes
    static constexpr std::size_t kUnbounded = SIZE_MAX / 8;      ///< a part that keeps everything

    explicit BoundedText(std::size_t part = kPart) : part_(part) {}

    void append(std::string_view text);

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] std::uint64_t omittedBytes() const { return omitted_; }

private:
    std::size_t part_;
    std::string text_;
    std::size_t markLength_ = 0;  ///< of the line behind the first part; 0: there is none
    std::uint64_t omitted_ = 0;
};

}  // namespace reelvane
