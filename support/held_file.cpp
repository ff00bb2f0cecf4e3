#include "support/held_file.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "support/make_string.h"
#include "support/posix_io.h"

namespace reelvane {
namespace {

std::optional<std::string> markOf(int folder, const char* name, int flags) {
    constexpr unsigned kNeeded = STATX_TYPE | STATX_INO | STATX_BTIME;
    struct statx facts {};
    if (::statx(folder, name, flags, kNeeded, &facts) != 0) return {};
    if ((facts.stx_mask & kNeeded) != kNeeded || !S_ISREG(facts.stx_mode)) return {};
    return makeString("%@@%@.%@", facts.stx_ino, facts.stx_btime.tv_sec, facts.stx_btime.tv_nsec);
}

std::filesystem::path pathOf(const FileDescriptor& file) {
    return makeString("/proc/%i/fd/%i", ::getpid(), file.get());
}

std::int64_t sinceEpoch(const timespec& time) {
    constexpr std::int64_t kPerSecond = 1'000'000'000;
    return std::int64_t{time.tv_sec} * kPerSecond + time.tv_nsec;
}

}  // namespace

std::optional<std::string> birthMarkOf(const std::filesystem::path& path) {
    return markOf(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW);
}

OwnFile ownFileAt(const std::filesystem::path& path) {
    return {.path = path, .birthMark = birthMarkOf(path).value_or("")};
}

bool isStillThere(const OwnFile& file) {
    return !file.birthMark.empty() && birthMarkOf(file.path) == file.birthMark;
}

HeldFile HeldFile::unnamed(const std::filesystem::path& folder, mode_t mode) {
    HeldFile made;
    made.mode_ = mode;
    made.file_.reset(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode));
    return made;
}

Naming HeldFile::nameAs(const std::filesystem::path& path) {
    const bool linked = file_.isOpen() && ::linkat(AT_FDCWD, heldPath().c_str(), AT_FDCWD,
                                                   path.c_str(), AT_SYMLINK_FOLLOW) == 0;
    if (!linked) {
        if (file_.isOpen() && errno == EEXIST) return Naming::Taken;
        auto made = createFile(path, mode_);
        if (!made.isOpen()) return errno == EEXIST ? Naming::Taken : Naming::Impossible;
        file_ = std::move(made);
    }
    path_ = path;
    name_.reset(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    return Naming::Made;
}

std::string HeldFile::birthMark() const {
    return markOf(file_.get(), "", AT_EMPTY_PATH).value_or("");
}

std::filesystem::path HeldFile::heldPath() const {
    return pathOf(file_);
}

bool HeldFile::liesAt(const std::filesystem::path& path) const {
    struct stat held {};
    struct stat found {};
    return ::fstat(file_.get(), &held) == 0 && ::lstat(path.c_str(), &found) == 0 &&
           held.st_dev == found.st_dev && held.st_ino == found.st_ino;
}

std::optional<std::filesystem::path> HeldFile::whereabouts() const {
    if (!isNamed()) return std::nullopt;
    if (liesAt(path_)) return path_;
    std::error_code failed;
    const auto moved = std::filesystem::read_symlink(pathOf(name_), failed);
    return !failed && liesAt(moved) ? std::optional(moved) : std::nullopt;
}

void HeldFile::followMove() {
    if (const auto where = whereabouts()) path_ = *where;
}

bool HeldFile::remove() const {
    if (!isNamed()) return true;
    if (const auto where = whereabouts()) return ::unlink(where->c_str()) == 0 || errno == ENOENT;
    // It is gone where nothing, or something else, is known to lie at its path.
    struct stat found {};
    return ::lstat(path_.c_str(), &found) == 0 || errno == ENOENT || errno == ENOTDIR;
}

bool HeldFile::replace(const std::filesystem::path& other) {
    const auto where = whereabouts();
    if (!where) {
        errno = ENOENT;
        return false;
    }
    if (::fsync(file_.get()) != 0 || ::rename(where->c_str(), other.c_str()) != 0) return false;
    path_ = other;
    const FileDescriptor folder(
        ::open(other.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.isOpen()) ::fsync(folder.get());
    return true;
}

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
