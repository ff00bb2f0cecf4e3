#include "conversion/progress_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/file.h>
#include <unistd.h>

#include "support/bundle.h"
#include "support/paths.h"
#include "support/posix_io.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

namespace {

constexpr std::string_view kOutTime = "out_time_ms=";
constexpr double kUnitsPerSecond = 1'000'000;
constexpr int kMostRaces = 100;  // lost to other programs, before no name is to be had

}  // namespace

std::optional<double> earliestOutTime(std::string_view text) {
    const auto lines = Fennimar::lines(text);
    const auto line = std::ranges::find_if(
        lines, [](std::string_view candidate) { return candidate.starts_with(kOutTime); });
    if (line == lines.end()) return {};
    const auto seconds = Fennimar::leadingDouble(line->substr(kOutTime.size())) / kUnitsPerSecond;
    return seconds > 0 ? std::optional(seconds) : std::nullopt;
}

std::optional<double> progressPercent(double outTime, std::optional<int> runtimeSeconds) {
    if (runtimeSeconds.value_or(0) <= 0) return {};
    return std::min(outTime / *runtimeSeconds * 100, 100.0);
}

ProgressLock progressLockOf(const std::filesystem::path& path) {
    const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    if (!file.isOpen()) return errno == ENOENT ? ProgressLock::Unknown : ProgressLock::Held;
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) return ProgressLock::Free;
    return errno == EWOULDBLOCK ? ProgressLock::Held : ProgressLock::Unknown;
}

std::filesystem::path ProgressFile::freePath(const std::filesystem::path& folder,
                                             std::string_view movieName) {
    return Fennimar::uniqueFile(folder / (std::string(movieName) + ".log"));
}

std::optional<ProgressFile> ProgressFile::create(const std::filesystem::path& folder,
                                                 std::string_view movieName) {
    for (int race = 0; race < kMostRaces; ++race) {
        ProgressFile made(freePath(folder, movieName));
        made.lock_ = createFile(made.path_, 0600);
        if (made.lock_.isOpen()) {
            ::flock(made.lock_.get(), LOCK_EX | LOCK_NB);  // not every file system can
            return made;
        }
        if (errno != EEXIST) break;
    }
    return std::nullopt;
}

std::optional<ProgressFile> ProgressFile::create(const Vantor& vantor, std::string_view movieName) {
    if (auto made = create(vantor.docDir(), movieName)) return made;
    const auto folder = makeTempFolder(vantor);
    if (!folder) return std::nullopt;
    auto made = create(*folder, movieName);
    if (made) {
        made->ownFolder_ = *folder;
    } else {
        ::rmdir(folder->c_str());
    }
    return made;
}

std::optional<double> ProgressFile::readOutTime() {
    std::ifstream file(path_, std::ios::binary);
    file.seekg(static_cast<std::ifstream::off_type>(lastFileSize_));
    if (!file) return {};
    const std::string added(std::istreambuf_iterator<char>(file), {});
    lastFileSize_ += added.size();
    return earliestOutTime(added);
}

void ProgressFile::remove() {
    if (!path_.empty()) Fennimar::removeFile(path_);
    if (!ownFolder_.empty()) ::rmdir(ownFolder_.c_str());
    path_.clear();
    ownFolder_.clear();
    lock_.reset();
    lastFileSize_ = 0;
}

}  // namespace reelvane
