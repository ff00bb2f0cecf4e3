#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>

#include "support/posix_io.h"

namespace reelvane {

/// Tells a file from every other that has ever had its name: its number on the volume and the
/// moment of its making. Writing, cutting and renaming keep it, and so does a restart of the
/// system; the number alone is given to the next file as soon as a file is deleted. Absent for
/// links and folders, and where the file system remembers no such moment. Any thread.
[[nodiscard]] std::optional<std::string> birthMarkOf(const std::filesystem::path& path);

/// A file that this program has made, as it is remembered beyond the program's end.
struct OwnFile {
    std::filesystem::path path{};
    std::string birthMark{};  ///< empty: none could be had

    [[nodiscard]] bool operator==(const OwnFile&) const = default;
};
/// What lies at the path now, as a file of ours.
[[nodiscard]] OwnFile ownFileAt(const std::filesystem::path& path);
/// True when the very file that was made still lies there.
[[nodiscard]] bool isStillThere(const OwnFile& file);

enum class Naming {
    Made,       ///< the file lies there, and only this program can have made it
    Taken,      ///< something lay there before
    Impossible  ///< no file can be made there; errno says why
};

/// A file that this program makes and holds open, so that nothing that is put in its place is ever
/// taken for it: it is told by device and number of the open descriptor, not by its path.
/// Move-only; any thread, one at a time. Its calls ask the disk.
class HeldFile {
public:
    HeldFile() = default;
    /// A file in the folder that has no name yet, and so goes by itself with the program. Where the
    /// file system has no such files, one that is not open before `nameAs`.
    [[nodiscard]] static HeldFile unnamed(const std::filesystem::path& folder, mode_t mode);

    /// Gives it its name, at which nothing may lie, not even a dead link.
    [[nodiscard]] Naming nameAs(const std::filesystem::path& path);

    /// -1 as long as there is no file.
    [[nodiscard]] int descriptor() const { return file_.get(); }
    [[nodiscard]] bool isNamed() const { return !path_.empty(); }
    /// The name that was given.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    /// Empty: none could be had.
    [[nodiscard]] std::string birthMark() const;
    /// Opens the very file, whatever lies at its name by now, here and in a child process. Only as
    /// long as it is held.
    [[nodiscard]] std::filesystem::path heldPath() const;
    /// Where the file lies now: under the name it was given, or wherever somebody has moved it.
    /// Absent when it was deleted, or another file was put in its place.
    [[nodiscard]] std::optional<std::filesystem::path> whereabouts() const;
    /// It is held under the name that somebody has given it meanwhile.
    void followMove();
    /// Deletes it, wherever it lies. False: it could not be deleted; errno says why.
    [[nodiscard]] bool remove() const;
    /// Moves it over whatever lies at the other path, in one step that is on the device when the
    /// call returns. False: nothing has changed there; errno says why.
    [[nodiscard]] bool replace(const std::filesystem::path& other);

private:
    [[nodiscard]] bool liesAt(const std::filesystem::path& path) const;

    FileDescriptor file_;
    FileDescriptor name_;         ///< of what was made without a name, the system follows this one
    std::filesystem::path path_;  ///< empty: it has no name
    mode_t mode_ = 0;
};

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
