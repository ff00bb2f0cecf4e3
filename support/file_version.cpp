#include "support/file_version.h"

#include <sys/stat.h>

namespace reelvane {
namespace {

std::int64_t sinceEpoch(const timespec& time) {
    constexpr std::int64_t kPerSecond = 1'000'000'000;
    return std::int64_t{time.tv_sec} * kPerSecond + time.tv_nsec;
}

}  // namespace

std::optional<FileVersion> fileVersionOf(const std::filesystem::path& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) return std::nullopt;
    return FileVersion{.device = facts.st_dev,
                       .number = facts.st_ino,
                       .size = static_cast<std::uint64_t>(facts.st_size),
                       .written = sinceEpoch(facts.st_mtim),
                       .changed = sinceEpoch(facts.st_ctim)};
}

}  // namespace reelvane
