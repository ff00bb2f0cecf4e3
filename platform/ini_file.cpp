#include "platform/ini_file.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "support/posix_io.h"

namespace reelvane {

namespace {

bool sameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

ReadState stateAfter(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return ReadState::Absent;
        case EMFILE:
        case ENFILE:
        case ENOMEM:
        case EINTR:
        case EAGAIN:
            return ReadState::NotNow;
        default:
            return ReadState::Unreadable;
    }
}

/// 0, or the errno of the read that failed.
int readAll(int descriptor, std::string& text) {
    std::array<char, 16384> buffer{};
    for (;;) {
        const auto count = ::read(descriptor, buffer.data(), buffer.size());
        if (count == 0) return 0;
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return errno;
        }
    }
}

std::optional<FileIdentity> identityOfOpen(int descriptor) {
    struct stat status = {};
    if (::fstat(descriptor, &status) < 0) return std::nullopt;
    return FileIdentity(status);
}

/// Where the path leads, also when nothing is there yet.
std::filesystem::path followed(std::filesystem::path path) {
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code notALink;
        const auto target = std::filesystem::read_symlink(path, notALink);
        if (notALink) break;
        path = path.parent_path() / target;
    }
    return path;
}

bool moveUnlessTaken(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL) return false;
    // A file system that cannot do both in one step.
    struct stat status = {};
    if (::lstat(to.c_str(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

FileIdentity::FileIdentity(const struct stat& status)
    : device(status.st_dev),
      inode(status.st_ino),
      size(status.st_size),
      modified(status.st_mtim),
      changed(status.st_ctim) {}

bool FileIdentity::operator==(const FileIdentity& other) const {
    return device == other.device && inode == other.inode && size == other.size &&
           sameTime(modified, other.modified) && sameTime(changed, other.changed);
}

std::optional<FileIdentity> identityOf(const std::filesystem::path& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) < 0) return std::nullopt;
    return FileIdentity(status);
}

FileContent readWhole(const std::filesystem::path& path) {
    // O_NONBLOCK: a named pipe would keep us waiting for its writer.
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen()) return {.state = stateAfter(errno), .identity = identityOf(path)};
    struct stat status = {};
    if (::fstat(file.get(), &status) < 0 || !S_ISREG(status.st_mode)) {
        return {.state = ReadState::Unreadable, .identity = identityOf(path)};
    }
    FileContent content{.identity = FileIdentity(status)};
    const int error = readAll(file.get(), content.text);
    content.state = error == 0 ? ReadState::Read : stateAfter(error);
    content.file = std::move(file);
    return content;
}

std::optional<FileContent> replaceFile(const std::filesystem::path& path, const std::string& text) {
    const auto target = followed(path);
    auto temporary = target;
    temporary += ".new";
    ::unlink(temporary.c_str());  // left behind by a program that was killed in mid-write
    FileDescriptor file(::open(
        temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen()) return std::nullopt;
    if (!takePlace(file, temporary, text, target, true)) return std::nullopt;
    synchronizeFolder(target.parent_path());
    FileContent content{.state = ReadState::Read, .identity = identityOfOpen(file.get())};
    content.file = std::move(file);
    return content;
}

std::optional<std::filesystem::path> setAside(const std::filesystem::path& path) {
    constexpr int kMostNames = 1000;
    for (int number = 0; number < kMostNames; ++number) {
        auto name = path;
        name += number == 0 ? ".damaged" : ".damaged-" + std::to_string(number);
        if (moveUnlessTaken(path, name)) return name;
        if (errno != EEXIST) break;
    }
    return std::nullopt;
}

void synchronizeFolder(const std::filesystem::path& folder) {
    const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen()) ::fsync(opened.get());
}

}  // namespace reelvane
