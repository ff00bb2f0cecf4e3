#include "support/posix_io.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace reelvane {

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

FileDescriptor createFile(const std::filesystem::path& path, mode_t mode) {
    return FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
}

bool takePlace(const FileDescriptor& file, const std::filesystem::path& path,
               std::string_view bytes, const std::filesystem::path& target, bool synchronized) {
    const bool taken = writeAll(file.get(), bytes) && (!synchronized || ::fsync(file.get()) == 0) &&
                       ::rename(path.c_str(), target.c_str()) == 0;
    if (!taken) ::unlink(path.c_str());
    return taken;
}

bool makePrivateFolder(const std::filesystem::path& folder) {
    const auto make = [&folder] {
        return ::mkdir(folder.c_str(), S_IRWXU) == 0 && ::chmod(folder.c_str(), S_IRWXU) == 0;
    };
    if (make()) return true;
    if (errno == ENOENT && folder.has_relative_path()) {
        if (makePrivateFolder(folder.parent_path()) && make()) return true;
    }
    const int error = errno;
    struct stat status = {};
    if (::stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) return true;
    errno = error;
    return false;
}

}  // namespace reelvane
