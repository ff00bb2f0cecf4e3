#include "app/destinations.h"

#include <algorithm>
#include <utility>

#include "app/bookmark_problem.h"
#include "app/launch_corrections.h"
#include "app/preference_keys.h"
#include "support/alerts.h"
#include "support/logging.h"
#include "support/ports/panels.h"
#include "support/ports/translations.h"
#include "support/preference_text.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

std::string lastComponent(const std::filesystem::path& folder) {
    const auto name = (folder.has_filename() ? folder : folder.parent_path()).filename();
    return name.empty() ? folder.native() : name.native();  // the root has no name of its own
}

/// The row of the folder that was added last: behind it stand a separator and the adding item.
std::size_t newestFolderRow(const PopUpMenu& menu) {
    return menu.items().size() - 3;
}

}  // namespace

std::vector<MenuItem> destinationMenuItems(const FixedDestinationTitles& titles,
                                           const std::vector<std::string>& folders) {
    std::vector<MenuItem> items{{.title = titles.ask}, {.title = titles.nextToSource}, {}};
    for (const auto& folder : folders) items.push_back({.title = folder});
    if (!folders.empty()) items.emplace_back();
    items.push_back({.title = titles.add});
    return items;
}

const OpenedFolder* folderHolding(const std::vector<OpenedFolder>& folders,
                                  const std::filesystem::path& target) {
    const auto found = std::find_if(folders.rbegin(), folders.rend(), [&](const auto& opened) {
        return target.native().starts_with(opened.folder.native());
    });
    return found == folders.rend() ? nullptr : &*found;
}

Destinations::Destinations(Vantor& vantor) : vantor_(vantor) {}

void Destinations::addOpenedFolder(std::filesystem::path folder) {
    openedFolders_.push_back({.folder = std::move(folder)});
}

Destinations::SavedFolders Destinations::savedFolders() const {
    const auto& preferences = vantor_.preferences();
    SavedFolders folders{
        .bookmarks = preferences.defaultArray(kDestinationBookmarksKey)
                         .value_or(std::vector<BookmarkData>()),
        .names =
            preferences.defaultArray(kDestinationNamesKey).value_or(std::vector<std::string>())};
    folders.names.resize(folders.bookmarks.size());  // a store that was edited by hand
    return folders;
}

void Destinations::store(const SavedFolders& folders) {
    // In one step: the lists belong together, whatever happens in between.
    vantor_.preferences().setTogether(
        {{std::string(kDestinationBookmarksKey), preferenceText(folders.bookmarks)},
         {std::string(kDestinationNamesKey), preferenceText(folders.names)}});
}

void Destinations::validateAtLaunch() {
    for (auto& granted : vantor_.ports().folderAccess.grantedFolders()) {
        addOpenedFolder(std::move(granted));
    }
    const auto saved = savedFolders();
    SavedFolders valid;
    for (std::size_t i = 0; i < saved.bookmarks.size(); ++i) {
        if (!openAtLaunch(saved.bookmarks[i])) continue;
        valid.bookmarks.push_back(saved.bookmarks[i]);
        valid.names.push_back(saved.names[i]);
    }
    if (const auto invalid = saved.bookmarks.size() - valid.bookmarks.size(); invalid != 0) {
        vn_log_level(LogError, "Info: going to delete %lu invalid bookmarks", invalid);
        store(valid);
    }
    clampDefaultDestination(vantor_.preferences(), valid.bookmarks.size());
    rebuildPreferencesDestinationPopUp();
}

bool Destinations::openAtLaunch(const BookmarkData& bookmark) {
    auto& access = vantor_.ports().folderAccess;
    const auto resolved = access.resolveBookmark(bookmark);
    if (!resolved.folder || !access.startAccessing(*resolved.folder)) return false;
    openedFolders_.push_back({.folder = *resolved.folder, .securityScoped = true});
    access.stopAccessing(*resolved.folder);  // started again when a job uses the folder
    return true;
}

void Destinations::rebuildDestinationPopUp() {
    rebuild(destinationPopUp_);
}

void Destinations::rebuildPreferencesDestinationPopUp() {
    rebuild(preferencesPopUp_);
}

void Destinations::rebuild(PopUpMenu& menu) {
    const auto& translations = vantor_.ports().translations;
    menu.setItems(
        destinationMenuItems({.ask = translations.localized("Ask for Each File"),
                              .nextToSource = translations.localized("Next to the Source File"),
                              .add = translations.localized("Add a Destination…")},
                             savedFolders().names));
    menu.selectItemAtIndex(
        static_cast<std::size_t>(vantor_.preferences().defaultInt(kDefaultDestinationKey)));
}

void Destinations::chooseNewDestination(DestinationMenu menu) {
    const auto parent = menu == DestinationMenu::FileSheet ? PanelParent::MainWindow
                                                           : PanelParent::PreferencesWindow;
    vantor_.ports().panels.open({.parent = parent, .chooseFolder = true},
                                [this, menu, alive = std::weak_ptr(alive_)](
                                    const std::vector<std::filesystem::path>& chosen) {
                                    if (!alive.lock() || chosen.empty()) return;
                                    addDestination(chosen.front(), menu);
                                });
}

void Destinations::addDestination(const std::filesystem::path& folder, DestinationMenu menu) {
    const auto created = vantor_.ports().folderAccess.createBookmark(folder);
    if (!created.bookmark) {
        vn_log_level(LogError, "Error creating bookmark: %@", created.error);
        return;
    }
    auto saved = savedFolders();
    if (std::ranges::find(saved.bookmarks, *created.bookmark) != saved.bookmarks.end()) {
        refuseDuplicate();
        return;
    }
    saved.bookmarks.push_back(*created.bookmark);
    saved.names.push_back(lastComponent(folder));
    store(saved);
    vantor_.preferences().synchronize();
    rebuildPreferencesDestinationPopUp();
    if (menu == DestinationMenu::Preferences) {
        const auto row = newestFolderRow(preferencesPopUp_);
        preferencesPopUp_.selectItemAtIndex(row);
        vantor_.preferences().setDefaultInt(kDefaultDestinationKey, static_cast<int>(row));
    } else {
        rebuildDestinationPopUp();
        destinationPopUp_.selectItemAtIndex(newestFolderRow(destinationPopUp_));
    }
}

void Destinations::refuseDuplicate() {
    alert_apptitled(vantor_, kAlreadyBookmarked, "D'oh");
    vantor_.preferences().setDefaultInt(kDefaultDestinationKey, kAskDestination);
    preferencesPopUp_.selectItemAtIndex(kAskDestination);
    destinationPopUp_.selectItemAtIndex(kAskDestination);
}

bool Destinations::isDestination(std::size_t menuIndex) const {
    return menuIndex != kSeparatorDestination &&
           menuIndex < kFirstFolderDestination + savedFolders().bookmarks.size();
}

std::filesystem::path Destinations::openSavedFolder(std::size_t menuIndex) {
    auto& access = vantor_.ports().folderAccess;
    const auto bookmarks = savedFolders().bookmarks;
    const auto resolved = access.resolveBookmark(bookmarks.at(menuIndex - kFirstFolderDestination));
    if (!resolved.folder) {
        throw BookmarkProblem("Bookmark Problem: URLByResolvingBookmarkData", resolved.error);
    }
    if (!access.startAccessing(*resolved.folder)) {
        throw BookmarkProblem("Bookmark Problem: startAccessingSecurityScopedResource",
                              resolved.folder->native());
    }
    return *resolved.folder;
}

}  // namespace reelvane
