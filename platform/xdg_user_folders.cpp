#include "platform/xdg_user_folders.h"

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "platform/account_database.h"
#include "platform/ini_file.h"
#include "platform/shell_assignments.h"

namespace reelvane {

namespace {

using std::filesystem::path;

/// The conventions say to ignore a path that is not absolute.
path folderFrom(const char* variable, const path& otherwise) {
    const char* const value = std::getenv(variable);
    return value != nullptr && path(value).is_absolute() ? path(value) : otherwise;
}

/// An entry is absolute or begins with "$HOME/"; others are ignored.
path userFolder(const std::map<std::string, std::string, std::less<>>& entries,
                std::string_view name, const path& home, const path& otherwise) {
    constexpr std::string_view kHome = "$HOME";
    const auto found = entries.find(name);
    if (found == entries.end()) return otherwise;
    const std::string_view entry = found->second;
    if (entry.starts_with('/')) return path(entry).lexically_normal();
    if (entry != kHome && !entry.starts_with("$HOME/")) return otherwise;
    const auto below = path(entry.substr(kHome.size())).relative_path();
    return below.empty() ? home : home / below;
}

}  // namespace

UserFolders xdgUserFolders() {
    const auto accountHome = path(currentAccount().home);
    const auto home = folderFrom("HOME", accountHome);
    const auto configuration = folderFrom("XDG_CONFIG_HOME", home / ".config");
    const auto entries = parseShellAssignments(readWhole(configuration / "user-dirs.dirs").text);
    return {.documents = userFolder(entries, "XDG_DOCUMENTS_DIR", home, home / "Documents"),
            .desktop = userFolder(entries, "XDG_DESKTOP_DIR", home, home / "Desktop"),
            .applicationData = folderFrom("XDG_DATA_HOME", home / ".local/share"),
            .configuration = configuration,
            .cache = folderFrom("XDG_CACHE_HOME", home / ".cache"),
            .home = home,
            .accountHome = accountHome};
}

}  // namespace reelvane
