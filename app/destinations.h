#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/pop_up_menu.h"
#include "app/saved_destinations.h"
#include "support/bundle.h"
#include "support/ports/preferences_store.h"

namespace reelvane {

class Vantor;

/// The first items of a destination menu. Preferences store these numbers: never renumber.
inline constexpr std::size_t kAskDestination = 0;
inline constexpr std::size_t kNextToSourceDestination = 1;
inline constexpr std::size_t kSeparatorDestination = 2;
inline constexpr std::size_t kFirstFolderDestination = 3;  ///< plus the index of the saved folder

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
                                                         const std::vector<std::string>& folders);

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

    /// Drops saved folders that are gone, opens the others and brings the stored choice back into
    /// the menu, as soon as the disks have answered. Once, at launch.
    void validateAtLaunch();
    void rebuildDestinationPopUp();
    void rebuildPreferencesDestinationPopUp();
    /// Lets the user pick a folder and saves it.
    void chooseNewDestination(DestinationMenu menu);
    /// The user picked this row of the preferences' menu: it is the default from now on, or the one
    /// that adds a destination.
    void pickPreferencesDestination(std::size_t menuIndex);
    /// Drops a saved folder; nothing on disk changes.
    void removeSavedDestination(const BookmarkData& bookmark);
    /// Puts a saved folder at this place among the saved folders.
    void moveSavedDestination(const BookmarkData& bookmark, std::size_t place);

    /// False for the separators and the item that adds a destination.
    [[nodiscard]] bool isDestination(std::size_t menuIndex) const;
    /// The saved folder behind the menu index of one.
    [[nodiscard]] BookmarkData savedFolder(std::size_t menuIndex) const;

private:
    void validated(std::vector<OpenedFolder> opened, const std::vector<BookmarkData>& lost);
    void bookmark(const std::filesystem::path& folder, DestinationMenu menu);
    void addDestination(const std::filesystem::path& folder, const BookmarkResult& created,
                        DestinationMenu menu);
    void refuseDuplicate();
    void rearrange(const std::function<void(PreferenceValues&)>& edit);
    void rebuild(PopUpMenu& menu);

    // Shared only so that the answer of a panel after this object's end can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    Vantor& vantor_;
    PopUpMenu destinationPopUp_;
    PopUpMenu preferencesPopUp_;
    std::vector<OpenedFolder> openedFolders_;
};

}  // namespace reelvane
