#include "support/log_capture.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "support/make_string.h"
#include "support/posix_io.h"
#include "support/strings.h"

namespace reelvane {
namespace {

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

}  // namespace reelvane
