#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "app/saved_destinations.h"
#include "support/ports/folder_access.h"

namespace reelvane {

class Preferences;

/// A folder, or the one sentence on why there is none.
struct FolderAnswer {
    std::optional<std::filesystem::path> folder{};
    std::string problem{};
};
/// The folder that was saved under this name or with this path.
[[nodiscard]] FolderAnswer folderSavedAs(const Preferences& preferences, FolderAccess& access,
                                         std::string_view name);
/// The folder of this saved destination.
[[nodiscard]] FolderAnswer folderOf(const SavedDestination& saved, FolderAccess& access);

}  // namespace reelvane
