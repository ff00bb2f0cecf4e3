#pragma once

#include <filesystem>
#include <string_view>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

namespace reelvane {

/// Owns one open file descriptor and closes it; move-only. -1 is none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) reset(std::exchange(other.descriptor_, -1));
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const { return descriptor_; }
    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    /// Hands the descriptor over to the caller, who closes it.
    [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }
    void reset(int descriptor = -1) {
        if (descriptor_ >= 0) ::close(descriptor_);
        descriptor_ = descriptor;
    }

private:
    int descriptor_ = -1;
};

/// Writes all bytes to an open file; false when that fails, with errno set. Any thread; may block.
bool writeAll(int file, std::string_view bytes);

/// Makes a file where nothing lies, not even a dead link, and opens it: of several
/// programs that try at once one succeeds. Closed when that fails, with errno set. Any thread.
[[nodiscard]] FileDescriptor createFile(const std::filesystem::path& path, mode_t mode);

/// Writes the bytes into a new file that is open and lies beside the target, and lets it take the
/// target's place in one step, so that nobody ever finds half a file. False: the target is as it
/// was, and the new file is gone. `synchronized`: the bytes are on the device before. Any thread.
[[nodiscard]] bool takePlace(const FileDescriptor& file, const std::filesystem::path& path,
                             std::string_view bytes, const std::filesystem::path& target,
                             bool synchronized);

/// Makes the folder, and those above it that are missing, for this user alone whatever the umask
/// says. False: there is none, with errno set. Any thread.
bool makePrivateFolder(const std::filesystem::path& folder);

}  // namespace reelvane
