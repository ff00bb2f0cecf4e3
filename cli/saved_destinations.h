#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/ports/folder_access.h"
#include "support/ports/preferences_store.h"

namespace reelvane {

class Preferences;

/// One saved destination folder.
struct SavedDestination {
    std::string name{};
    BookmarkData bookmark{};
};

/// In the order of the menu.
[[nodiscard]] std::vector<SavedDestination> savedDestinations(const Preferences& preferences);

/// Edits of the stored values, in one step each. Pure but for the values.
/// False when the folder is saved already.
bool addDestination(PreferenceValues& values, const SavedDestination& destination);
/// Drops the first folder of this name; false when there is none. The default destination keeps
/// meaning the same folder, or becomes "ask" when it was this one.
bool removeDestination(PreferenceValues& values, std::string_view name);

/// A folder, or the one sentence on why there is none.
struct FolderAnswer {
    std::optional<std::filesystem::path> folder{};
    std::string problem{};
};
/// The folder that was saved under this name.
[[nodiscard]] FolderAnswer folderSavedAs(const Preferences& preferences, FolderAccess& access,
                                         std::string_view name);
/// "There is no saved destination named 'Moives'. Did you mean 'Movies'?"
[[nodiscard]] std::string unknownDestination(const std::vector<SavedDestination>& known,
                                             std::string_view name);

}  // namespace reelvane
