#include "conversion/progress_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

#include "support/paths.h"
#include "support/strings.h"

namespace reelvane {

namespace {

constexpr std::string_view kOutTime = "out_time_ms=";
constexpr double kUnitsPerSecond = 1'000'000;
constexpr int kMostRaces = 100;  // lost to other programs, before the name is taken as it is

/// False when somebody else has made the file first.
bool claim(const std::filesystem::path& path) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0) return errno != EEXIST;
    ::close(file);
    return true;
}

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

std::filesystem::path ProgressFile::freePath(const std::filesystem::path& folder,
                                             std::string_view movieName) {
    return Fennimar::uniqueFile(folder / (std::string(movieName) + ".log"));
}

ProgressFile ProgressFile::create(const std::filesystem::path& folder, std::string_view movieName) {
    auto path = freePath(folder, movieName);
    for (int race = 0; race < kMostRaces && !claim(path); ++race) {
        path = freePath(folder, movieName);
    }
    return ProgressFile(path);
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
    path_.clear();
    lastFileSize_ = 0;
}

}  // namespace reelvane
