#include "support/logging.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstddef>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "support/make_string.h"
#include "support/ports/system_log.h"
#include "support/posix_io.h"
#include "support/preference_text.h"
#include "support/preferences.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::uint32_t kLevels = 8;
constexpr std::uint32_t kLevelRingPlaces = 10;
constexpr std::uint32_t kPrefsRingPlaces = 43;

/// The one process-wide state. The lock is never held while a sink works, because a sink may log.
struct LogState {
    std::mutex mutex;
    std::condition_variable sinksIdle;
    LogSinks sinks;
    int messagesInFlight = 0;  ///< that may still use the sinks
    std::array<std::uint32_t, kLevels> levelPositions{};
    std::uint32_t prefsPosition = 0;
    LogCapture capture;
};

LogState& logState() {
    static LogState state;
    return state;
}

// How many messages this thread is sending at this moment, one inside the other.
thread_local int messagesOfThisThread = 0;
thread_local bool writingRing = false;

/// Holds the sinks in place while a message goes to them.
class SinkUse {
public:
    SinkUse() {
        auto& state = logState();
        const std::lock_guard lock(state.mutex);
        ++state.messagesInFlight;
        ++messagesOfThisThread;
        sinks_ = state.sinks;
    }
    ~SinkUse() {
        auto& state = logState();
        const std::lock_guard lock(state.mutex);
        --state.messagesInFlight;
        --messagesOfThisThread;
        state.sinksIdle.notify_all();
    }
    SinkUse(const SinkUse&) = delete;
    SinkUse& operator=(const SinkUse&) = delete;
    SinkUse(SinkUse&&) = delete;
    SinkUse& operator=(SinkUse&&) = delete;

    [[nodiscard]] const LogSinks& sinks() const { return sinks_; }

private:
    LogSinks sinks_;
};

/// In UTC: "2026-11-21 03:12:00 +0000".
std::string dateDescription() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    return makeString("%04i-%02i-%02i %02i:%02i:%02i +0000", utc.tm_year + 1900, utc.tm_mon + 1,
                      utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);
}

/// Further lines are set off, so that none passes for a message of its own.
std::string logText(std::string_view message) {
    return Fennimar::replaced(printableLines(message), "\n", "\n    ");
}

/// Marks the time in which this thread writes to a ring.
class RingWriting {
public:
    RingWriting() { writingRing = true; }
    ~RingWriting() { writingRing = false; }
    RingWriting(const RingWriting&) = delete;
    RingWriting& operator=(const RingWriting&) = delete;
    RingWriting(RingWriting&&) = delete;
    RingWriting& operator=(RingWriting&&) = delete;
};

struct Ring {
    std::string keyStart;
    std::uint32_t& position;
    std::uint32_t places = 0;
};

/// A store that cannot be written may say so in the log, and that message must not try it again.
void keepInRing(const LogSinks& sinks, const Ring& ring, std::string_view message) {
    if (sinks.preferences == nullptr || writingRing) return;
    const RingWriting writing;
    auto key = ring.keyStart;
    {
        const std::lock_guard lock(logState().mutex);
        key += std::to_string(ring.position);
        ring.position = (ring.position + 1) % ring.places;
    }
    // In the background: a message must not wait for the disk.
    sinks.preferences->changeLater(
        key, [text = preferenceText(makeString("date: %@ message: %@", dateDescription(),
                                               message))](const auto&) { return text; });
}

constexpr std::array<std::string_view, 8> kLevelNames{"Emergency", "Alert",  "Critical", "Error",
                                                      "Warning",   "Notice", "Info",     "Debug"};
constexpr std::array<std::string_view, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::string captureLine(std::uint32_t level, std::string_view appName, std::string_view message) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    const auto date =
        makeString("%@ %02i", kMonths.at(static_cast<std::size_t>(local.tm_mon)), local.tm_mday);
    const auto time = makeString("%02i:%02i", local.tm_hour, local.tm_min);
    const auto name = kLevelNames.at(std::min<std::size_t>(level, kLevelNames.size() - 1));
    return makeString("%@ %@  %@[%i] <%@>: %@\n", date, time, appName, ::getpid(), name, message);
}

void keepEnd(const std::filesystem::path& path, std::uint64_t maxSize) {
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (file < 0) return;
    struct stat status {};
    const bool known = ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    const auto size = known ? static_cast<std::uint64_t>(status.st_size) : 0;
    if (size > maxSize) {
        std::string end(maxSize, '\0');
        const auto got = ::pread(file, end.data(), end.size(), static_cast<off_t>(size - maxSize));
        // Only a whole copy of the end may replace the file.
        if (got == static_cast<ssize_t>(end.size())) {
            if (writeAll(file, end) && ::ftruncate(file, static_cast<off_t>(maxSize)) == 0) {
                ::fsync(file);
            }
        }
    }
    ::close(file);
}

}  // namespace

void log_set_sinks(const LogSinks& sinks) {
    auto& state = logState();
    std::unique_lock lock(state.mutex);
    state.sinks = sinks;
    state.sinksIdle.wait(lock, [&] { return state.messagesInFlight == messagesOfThisThread; });
}

void log_message(std::uint32_t level, const std::string& given) {
    auto& state = logState();
    const SinkUse use;
    const auto message = logText(given);
    const auto& captured = Fennimar::isValidUtf8(given) ? message : given;
    if (const auto lost = state.capture.append(level, use.sinks().appName, captured)) {
        vn_log_level(LogError, "could not open create data from string %@ for log", *lost);
    }
    if (level >= kLevels) return;
    keepInRing(use.sinks(),
               {.keyStart = makeString("vantor_asl_lev%i_pos", level),
                .position = state.levelPositions.at(level),
                .places = kLevelRingPlaces},
               message);
    if (use.sinks().systemLog != nullptr) {
        use.sinks().systemLog->write(static_cast<int>(level), message);
    }
}

void vn_log_enablecapturetofile(const std::filesystem::path& file, std::uint64_t maxSize) {
    if (!logState().capture.open(file, maxSize)) {
        vn_log_level(LogError, "could not open file %@ for log file usage", file);
    }
}

void log_to_prefs(std::string_view message) {
    const SinkUse use;
    keepInRing(use.sinks(),
               {.keyStart = "vantor_logtoprefs_pos",
                .position = logState().prefsPosition,
                .places = kPrefsRingPlaces},
               message);
}

LogCapture::~LogCapture() {
    if (file_ >= 0) ::close(file_);
}

bool LogCapture::open(const std::filesystem::path& file, std::uint64_t maxSize) {
    const std::lock_guard lock(mutex_);
    if (maxSize != 0) keepEnd(file, maxSize);
    const int opened =
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0600);
    const int former = std::exchange(file_, opened);
    if (former >= 0) ::close(former);
    return opened >= 0;
}

std::optional<std::string> LogCapture::append(std::uint32_t level, std::string_view appName,
                                              std::string_view message) {
    const std::lock_guard lock(mutex_);
    if (file_ < 0) return std::nullopt;
    const auto line = captureLine(level, appName, message);
    if (!Fennimar::isValidUtf8(line)) return Fennimar::validUtf8(line);
    writeAll(file_, line);  // when it fails nobody is left to be told
    return std::nullopt;
}

void BoundedText::append(std::string_view text) {
    text_.append(text);
    // Seldom, so that a long text of short pieces is not moved with each of them.
    if (text_.size() - markLength_ <= 4 * part_) return;
    const auto middle = text_.size() - 2 * part_;
    omitted_ += middle - markLength_;
    const auto mark = makeString("\n[%lu bytes were left out here]\n", omitted_);
    text_.replace(part_, middle, mark);
    markLength_ = mark.size();
}

}  // namespace reelvane
