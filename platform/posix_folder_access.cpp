#include "platform/posix_folder_access.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace reelvane {
namespace {

namespace fs = std::filesystem;

/// One spelling for each folder, so that equal folders have equal bookmarks. Links stay.
fs::path spelled(const fs::path& folder) {
    std::error_code error;
    auto path = fs::absolute(folder, error).lexically_normal();
    return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

/// Empty when it is a folder.
std::string whyNoFolder(const fs::path& path) {
    std::error_code error;
    if (fs::is_directory(path, error)) return {};
    return path.native() + ": " + (error ? error.message() : "not a folder");
}

}  // namespace

bool isSandboxed(const fs::path& marker) {
    return ::access(marker.c_str(), F_OK) == 0;
}

PosixFolderAccess::PosixFolderAccess(fs::path sandboxMarker)
    : sandboxMarker_(std::move(sandboxMarker)) {}

void PosixFolderAccess::remember(const fs::path& folder) {
    const std::lock_guard lock(mutex_);
    bookmarked_.insert(folder);
}

BookmarkResult PosixFolderAccess::createBookmark(const fs::path& folder) {
    auto path = spelled(folder);
    if (auto error = whyNoFolder(path); !error.empty()) return {.error = std::move(error)};
    remember(path);
    return {.bookmark = path.native()};
}

ResolvedBookmark PosixFolderAccess::resolveBookmark(const BookmarkData& bookmark) {
    const bool isPath = bookmark.starts_with('/') && bookmark.find('\0') == std::string::npos;
    if (!isPath) return {.error = "not a bookmark of a folder"};
    if (auto error = whyNoFolder(bookmark); !error.empty()) return {.error = std::move(error)};
    remember(bookmark);
    return {.folder = bookmark};
}

bool PosixFolderAccess::startAccessing(const fs::path& folder) {
    std::error_code error;
    const fs::directory_iterator listing(folder, error);
    return !error && ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

void PosixFolderAccess::stopAccessing(const fs::path& /*folder*/) {}

std::vector<fs::path> PosixFolderAccess::grantedFolders() const {
    if (!isSandboxed(sandboxMarker_)) return {"/"};
    std::vector<fs::path> granted;
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && *runtime == '/') granted.push_back(fs::path(runtime) / "doc");
    const std::lock_guard lock(mutex_);
    granted.insert(granted.end(), bookmarked_.begin(), bookmarked_.end());
    return granted;
}

}  // namespace reelvane
