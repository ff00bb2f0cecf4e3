#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace reelvane {

/// What the program remembers of a folder that the user has granted, as opaque bytes.
using BookmarkData = std::string;

struct BookmarkResult {
    std::optional<BookmarkData> bookmark{};  ///< absent: `error` says why
    std::string error{};
};

struct ResolvedBookmark {
    std::optional<std::filesystem::path> folder{};  ///< absent: `error` says why
    std::string error{};
};

/// Access to folders that outlives a run of the program. Any thread: what asks a disk is called in
/// the background.
class FolderAccess {
public:
    virtual ~FolderAccess() = default;
    [[nodiscard]] virtual BookmarkResult createBookmark(const std::filesystem::path& folder) = 0;
    [[nodiscard]] virtual ResolvedBookmark resolveBookmark(const BookmarkData& bookmark) = 0;
    /// Where the folder was when it was last found, for the eye; empty: not known. Asks no disk, so
    /// that a network folder that hangs holds nobody up.
    [[nodiscard]] virtual std::filesystem::path pathOf(const BookmarkData& bookmark) const = 0;
    /// True when the folder can be listed and written from now on.
    [[nodiscard]] virtual bool startAccessing(const std::filesystem::path& folder) = 0;
    virtual void stopAccessing(const std::filesystem::path& folder) = 0;
    /// What is granted without asking: everything where no sandbox limits the program.
    [[nodiscard]] virtual std::vector<std::filesystem::path> grantedFolders() const = 0;
};

}  // namespace reelvane
