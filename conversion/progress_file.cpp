#include "conversion/progress_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <unistd.h>

#include "support/paths.h"
#include "support/posix_io.h"
#include "support/strings.h"

namespace reelvane {

namespace {

constexpr std::string_view kOutTime = "out_time_ms=";
constexpr std::string_view kTotalSize = "total_size=";
constexpr double kUnitsPerSecond = 1'000'000;

}  // namespace

std::optional<double> earliestOutTime(std::string_view text) {
    const auto lines = Fennimar::lines(text);
    const auto line = std::ranges::find_if(
        lines, [](std::string_view candidate) { return candidate.starts_with(kOutTime); });
    if (line == lines.end()) return {};
    const auto seconds = Fennimar::leadingDouble(line->substr(kOutTime.size())) / kUnitsPerSecond;
    return seconds > 0 ? std::optional(seconds) : std::nullopt;
}

ProgressReport readProgress(std::string_view text) {
    ProgressReport report{.outTime = earliestOutTime(text)};
    for (const auto line : Fennimar::lines(text)) {
        if (!line.starts_with(kTotalSize)) continue;
        const auto bytes = Fennimar::leadingDouble(line.substr(kTotalSize.size()));
        if (bytes > 0) report.bytes = static_cast<std::uint64_t>(bytes);
    }
    return report;
}

std::optional<double> progressPercent(const ProgressReport& report,
                                      std::optional<int> runtimeSeconds, std::uint64_t inputBytes) {
    const auto share = [](double done, double all) { return std::min(done / all * 100, 100.0); };
    if (report.outTime && runtimeSeconds.value_or(0) > 0) {
        return share(*report.outTime, *runtimeSeconds);
    }
    if (!report.bytes || inputBytes == 0) return {};
    return share(static_cast<double>(*report.bytes), static_cast<double>(inputBytes));
}

ProgressLock progressLockOf(const std::filesystem::path& path) {
    const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    if (!file.isOpen()) return errno == ENOENT ? ProgressLock::Unknown : ProgressLock::Held;
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) return ProgressLock::Free;
    return errno == EWOULDBLOCK ? ProgressLock::Held : ProgressLock::Unknown;
}

void lockProgress(int descriptor) {
    ::flock(descriptor, LOCK_EX | LOCK_NB);
}

std::filesystem::path freeProgressPath(const std::filesystem::path& folder,
                                       std::string_view movieName) {
    return Fennimar::uniqueFile(folder / (std::string(movieName) + ".log"));
}

ProgressReport ProgressReader::readNew(int descriptor) {
    std::string added;
    std::array<char, 4096> piece{};
    while (true) {
        const auto got = ::pread(descriptor, piece.data(), piece.size(), read_);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        added.append(piece.data(), static_cast<std::size_t>(got));
        read_ += got;
    }
    return readProgress(added);
}

}  // namespace reelvane
