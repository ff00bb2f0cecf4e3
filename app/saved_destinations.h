#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/ports/folder_access.h"
#include "support/ports/preferences_store.h"
#include "support/uncaught_exceptions.h"

namespace reelvane {

class Preferences;

/// The first items of a destination menu. Preferences store these numbers: never renumber.
inline constexpr std::size_t kAskDestination = 0;
inline constexpr std::size_t kNextToSourceDestination = 1;
inline constexpr std::size_t kSeparatorDestination = 2;
inline constexpr std::size_t kFirstFolderDestination = 3;  ///< plus the index of the saved folder

/// One saved destination folder.
struct SavedDestination {
    std::string name{};
    BookmarkData bookmark{};
};
using SavedDestinations = std::vector<SavedDestination>;

/// What a saved folder is called: its last component, or its path where it has none.
[[nodiscard]] std::string destinationName(const std::filesystem::path& folder);

/// The same with names that tell them apart: where there is none, or another of the same, the path
/// says more. Asks no disk.
[[nodiscard]] SavedDestinations toldApart(SavedDestinations destinations,
                                          const FolderAccess& access);

/// In the order of the menu.
[[nodiscard]] SavedDestinations savedDestinations(const Preferences& preferences);

/// Where outputs go.
struct DestinationChoice {
    enum class Kind { Ask, NextToSource, SavedFolder };
    Kind kind = Kind::Ask;
    BookmarkData folder{};  ///< of a saved folder
};

/// What a row means in a destination menu of these folders; absent where it stands for no place.
[[nodiscard]] std::optional<DestinationChoice> destinationOfRow(const SavedDestinations& folders,
                                                                std::size_t row);
/// The row that means this; absent when the folder is not among them.
[[nodiscard]] std::optional<std::size_t> rowOfDestination(const SavedDestinations& folders,
                                                          const DestinationChoice& choice);

// Edits of the stored values, in one step each. Pure but for the values. The default destination
// keeps meaning the same folder, or becomes "ask" when that one goes.

/// False when the folder is saved already.
bool addDestination(PreferenceValues& values, const SavedDestination& destination);
/// False when there is no such folder.
bool removeDestination(PreferenceValues& values, const BookmarkData& bookmark);
/// Drops the folders that a launch has not found. The default destination stays the number it is.
void dropLostDestinations(PreferenceValues& values, const std::vector<BookmarkData>& lost);
/// Puts the folder at this place among the folders, or at the end; false when there is none.
bool moveDestination(PreferenceValues& values, const BookmarkData& bookmark, std::size_t place);

/// A saved destination folder that could not be used when a job needed it.
class BookmarkProblem final : public NamedException {
    using NamedException::NamedException;
};

}  // namespace reelvane
