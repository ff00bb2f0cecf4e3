#pragma once

#include <filesystem>
#include <mutex>
#include <set>
#include <vector>

#include "support/ports/folder_access.h"

namespace reelvane {

/// What Flatpak puts into every sandbox.
inline constexpr const char* kSandboxMarker = "/.flatpak-info";

/// True where a sandbox limits what the program can reach.
[[nodiscard]] bool isSandboxed(const std::filesystem::path& marker = kSandboxMarker);

/// Access to folders as the file system gives it. A bookmark is the bytes of the folder's absolute
/// path: a folder that was moved is not found again.
class PosixFolderAccess final : public FolderAccess {
public:
    explicit PosixFolderAccess(std::filesystem::path sandboxMarker = kSandboxMarker);

    [[nodiscard]] BookmarkResult createBookmark(const std::filesystem::path& folder) override;
    [[nodiscard]] ResolvedBookmark resolveBookmark(const BookmarkData& bookmark) override;
    [[nodiscard]] std::filesystem::path pathOf(const BookmarkData& bookmark) const override {
        return bookmark;
    }
    [[nodiscard]] bool startAccessing(const std::filesystem::path& folder) override;
    void stopAccessing(const std::filesystem::path& folder) override;
    /// "/" outside a sandbox; inside, the document portal's folder and those of the bookmarks that
    /// were made or resolved in this run.
    [[nodiscard]] std::vector<std::filesystem::path> grantedFolders() const override;

private:
    void remember(const std::filesystem::path& folder);

    std::filesystem::path sandboxMarker_;
    mutable std::mutex mutex_;                    ///< never held while a disk is asked
    std::set<std::filesystem::path> bookmarked_;  ///< guarded by `mutex_`
};

}  // namespace reelvane
