#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>

#include "support/posix_io.h"

namespace reelvane {

/// What tells one state of a file from another.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified{};
    timespec changed{};

    explicit FileIdentity(const struct stat& status);
    [[nodiscard]] bool operator==(const FileIdentity& other) const;
};

/// Absent when nothing can be found at the path. Links are followed.
[[nodiscard]] std::optional<FileIdentity> identityOf(const std::filesystem::path& path);

enum class ReadState {
    Absent,      ///< there is no such file
    Read,        ///< whole
    Unreadable,  ///< it is no file, or its bytes cannot be had
    NotNow       ///< this program has no resources left to read it
};

struct FileContent {
    ReadState state = ReadState::Absent;
    std::string text{};
    std::optional<FileIdentity> identity{};
    FileDescriptor file{};  ///< while it is open no other file can take this one's inode number
};

[[nodiscard]] FileContent readWhole(const std::filesystem::path& path);

/// Replaces the file, at its link's target if it is a link, in one step that is on the device when
/// the call returns: mode 600. Absent when it failed; the old file is then whole, and nothing stays
/// beside it. The caller keeps others from replacing the same file meanwhile.
[[nodiscard]] std::optional<FileContent> replaceFile(const std::filesystem::path& path,
                                                     const std::string& text);

/// Moves whatever stands at the path (a link itself, not its target) to "PATH.damaged",
/// "PATH.damaged-1" and so on, never over something else. Absent when it could not be moved.
[[nodiscard]] std::optional<std::filesystem::path> setAside(const std::filesystem::path& path);

/// Puts the folder's entries onto the device, where its file system can.
void synchronizeFolder(const std::filesystem::path& folder);

}  // namespace reelvane
