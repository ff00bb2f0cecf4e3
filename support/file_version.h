#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace reelvane {

/// Which file a path leads to, and in which state: the same before and after means that nobody has
/// put another file there or written to it. Both times count, because not every file system moves
/// the time of change along (FAT has none).
struct FileVersion {
    std::uint64_t device = 0;
    std::uint64_t number = 0;  ///< of the inode
    std::uint64_t size = 0;
    std::int64_t written = 0;  ///< nanoseconds since 1970
    std::int64_t changed = 0;  ///< the same, of the inode's own change

    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

/// Of the file itself that a path or a link leads to; absent when it cannot be asked. Any thread.
[[nodiscard]] std::optional<FileVersion> fileVersionOf(const std::filesystem::path& path);

}  // namespace reelvane
