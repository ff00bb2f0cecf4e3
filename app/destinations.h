#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/saved_destinations.h"
#include "app/track_choices.h"
#include "support/errands.h"
#include "support/localization.h"
#include "support/ports/preferences_store.h"
#include "support/vantor.h"

namespace reelvane {

/// What a user is told who adds a saved folder again.
inline constexpr std::string_view kAlreadyBookmarked =
    localizable("This destination is already bookmarked. You can not add it again.");

/// The rows of a destination menu with these saved folders; the fixed titles are given.
struct FixedDestinationTitles {
    std::string ask{};
    std::string nextToSource{};
    std::string add{};
};
[[nodiscard]] std::vector<MenuItem> destinationMenuItems(const FixedDestinationTitles& titles,
                                                         const SavedDestinations& folders);

/// What the selected row of a destination menu shows; absent where none is selected.
[[nodiscard]] std::optional<DestinationChoice> chosenDestination(const PopUpMenu& menu);

/// A folder that may be written in during this run.
struct OpenedFolder {
    std::filesystem::path folder{};
    bool securityScoped = false;  ///< from a bookmark: access is started at each use
};

/// The opened folder whose path is a plain prefix of the target's; the last one wins. Pure.
[[nodiscard]] const OpenedFolder* folderHolding(const std::vector<OpenedFolder>& folders,
                                                const std::filesystem::path& target);

/// Resolves a saved folder and starts the access to it. Throws BookmarkProblem when the folder
/// cannot be found or opened. Any thread; asks the disk.
[[nodiscard]] std::filesystem::path openSavedFolder(FolderAccess& access,
                                                    const BookmarkData& bookmark);

/// Which of the two menus asked for a new destination.
enum class DestinationMenu { Preferences = 0, FileSheet = 1 };

/// The saved destination folders and the destination menus. Main thread only.
class Destinations {
public:
    explicit Destinations(Vantor& vantor);

    [[nodiscard]] PopUpMenu& destinationPopUp() { return destinationPopUp_; }
    [[nodiscard]] PopUpMenu& preferencesDestinationPopUp() { return preferencesPopUp_; }
    [[nodiscard]] const std::vector<OpenedFolder>& openedFolders() const { return openedFolders_; }
    /// A folder that the user has just granted.
    void addOpenedFolder(std::filesystem::path folder);

    /// Takes what is granted without asking. Once, at launch.
    void takeGrantedFolders();
    /// Drops saved folders that are gone, opens the others and brings the stored choice back into
    /// the menu, as soon as the disks have answered. Once, at launch of a window.
    void validateAtLaunch();
    /// For another movie: the file sheet's menu shows the default.
    void rebuildDestinationPopUp();
    /// The preferences have changed. In the file sheet a choice that the user has made stays while
    /// there is its folder; what he has not touched follows the default.
    void rebuildPreferencesDestinationPopUp();
    /// Lets the user pick a folder and saves it.
    void chooseNewDestination(DestinationMenu menu);
    /// The user picked this row of a menu: it is the default or the present movie's destination
    /// from now on, or the one that adds a destination.
    void pick(DestinationMenu menu, std::size_t row);
    /// Drops a saved folder; nothing on disk changes.
    void removeSavedDestination(const BookmarkData& bookmark);
    /// Puts a saved folder at this place among the saved folders.
    void moveSavedDestination(const BookmarkData& bookmark, std::size_t place);

private:
    void validated(std::vector<OpenedFolder> opened, const std::vector<BookmarkData>& lost);
    void bookmark(const std::filesystem::path& folder, DestinationMenu menu);
    void addDestination(const std::filesystem::path& folder, const BookmarkResult& created,
                        DestinationMenu menu);
    void refuseDuplicate();
    void rearrange(const std::function<void(PreferenceValues&)>& edit);
    void storeDefault(std::size_t row);
    void rebuild(PopUpMenu& menu);

    Vantor& vantor_;
    PopUpMenu destinationPopUp_;
    PopUpMenu preferencesPopUp_;
    bool touched_ = false;  // the user has chosen the present movie's destination
    std::vector<OpenedFolder> openedFolders_;
    Errands errands_{vantor_.ports().dispatcher};
};

}  // namespace reelvane
