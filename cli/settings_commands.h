#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/saved_destinations.h"
#include "cli/json_lines.h"
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

/// A saved destination, or the one sentence on why there is none of this name: "There is no saved
/// destination named 'Moives'. Did you mean 'Movies'?"
struct DestinationAnswer {
    std::optional<SavedDestination> destination{};
    std::string problem{};
};
[[nodiscard]] DestinationAnswer destinationSavedAs(const SavedDestinations& saved,
                                                   const FolderAccess& access,
                                                   std::string_view nameOrPath);

class Preferences;

/// Every preference with its present value, in the order of the table.
[[nodiscard]] std::vector<PreferenceRow> preferenceRows(const Preferences& preferences);

/// Key, value, default and type in columns, each meaning below, broken to this width.
[[nodiscard]] std::string preferenceListText(std::span<const PreferenceRow> rows,
                                             std::size_t columns);

/// The reference page, in Markdown.
[[nodiscard]] std::string preferenceReference();

}  // namespace reelvane
