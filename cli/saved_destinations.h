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
/// The folder that was saved under this name.
[[nodiscard]] FolderAnswer folderSavedAs(const Preferences& preferences, FolderAccess& access,
                                         std::string_view name);
/// "There is no saved destination named 'Moives'. Did you mean 'Movies'?"
[[nodiscard]] std::string unknownDestination(const SavedDestinations& known, std::string_view name);

}  // namespace reelvane
