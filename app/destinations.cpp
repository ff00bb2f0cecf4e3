#include "app/destinations.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/bookmark_problem.h"
#include "app/launch_corrections.h"
#include "app/preference_keys.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/logging.h"
#include "support/ports/panels.h"
#include "support/ports/translations.h"
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

struct TriedFolders {
    std::vector<OpenedFolder> opened{};
    std::vector<BookmarkData> lost{};
};

/// Access is started again when a job uses the folder.
TriedFolders tryAll(FolderAccess& access, const SavedDestinations& saved) {
    TriedFolders tried;
    for (const auto& destination : saved) {
        const auto resolved = access.resolveBookmark(destination.bookmark);
        if (resolved.folder && access.startAccessing(*resolved.folder)) {
            access.stopAccessing(*resolved.folder);
            tried.opened.push_back({.folder = *resolved.folder, .securityScoped = true});
        } else {
            tried.lost.push_back(destination.bookmark);
        }
    }
    return tried;
}

}  // namespace

std::filesystem::path openSavedFolder(FolderAccess& access, const BookmarkData& bookmark) {
    const auto resolved = access.resolveBookmark(bookmark);
    if (!resolved.folder) {
        throw BookmarkProblem("Bookmark Problem: URLByResolvingBookmarkData", resolved.error);
    }
    if (!access.startAccessing(*resolved.folder)) {
        throw BookmarkProblem("Bookmark Problem: startAccessingSecurityScopedResource",
                              resolved.folder->native());
    }
    return *resolved.folder;
}

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

void Destinations::validateAtLaunch() {
    for (auto& granted : vantor_.ports().folderAccess.grantedFolders()) {
        addOpenedFolder(std::move(granted));
    }
    rebuildPreferencesDestinationPopUp();
    dispatch_async_back(vantor_, [this, &vantor = vantor_, alive = std::weak_ptr(alive_),
                                  saved = savedDestinations(vantor_.preferences())] {
        auto [opened, lost] = tryAll(vantor.ports().folderAccess, saved);
        dispatch_async_main(vantor,
                            [this, alive, opened = std::move(opened), lost = std::move(lost)] {
                                if (alive.lock()) validated(opened, lost);
                            });
    });
}

void Destinations::validated(std::vector<OpenedFolder> opened,
                             const std::vector<BookmarkData>& lost) {
    std::ranges::move(opened, std::back_inserter(openedFolders_));
    auto& preferences = vantor_.preferences();
    const auto drop = [&lost](PreferenceValues& values) { dropLostDestinations(values, lost); };
    if (!lost.empty()) {
        vn_log_level(LogError, "Info: going to delete %lu invalid bookmarks", lost.size());
        rearrange(drop);
    }
    clampDefaultDestination(preferences, savedDestinations(preferences).size());
    rebuildPreferencesDestinationPopUp();
}

void Destinations::rebuildDestinationPopUp() {
    rebuild(destinationPopUp_);
}

void Destinations::rebuildPreferencesDestinationPopUp() {
    rebuild(preferencesPopUp_);
}

void Destinations::rebuild(PopUpMenu& menu) {
    const auto& translations = vantor_.ports().translations;
    std::vector<std::string> names;
    for (auto& saved : savedDestinations(vantor_.preferences())) {
        names.push_back(std::move(saved.name));
    }
    menu.setItems(
        destinationMenuItems({.ask = translations.localized("Ask for Each File"),
                              .nextToSource = translations.localized("Next to the Source File"),
                              .add = translations.localized("Add a Destination…")},
                             names));
    menu.selectItemAtIndex(
        static_cast<std::size_t>(vantor_.preferences().defaultInt(kDefaultDestinationKey)));
}

void Destinations::chooseNewDestination(DestinationMenu menu) {
    const auto parent = menu == DestinationMenu::FileSheet ? PanelParent::MainWindow
                                                           : PanelParent::PreferencesWindow;
    vantor_.ports().panels.open({.parent = parent, .chooseFolder = true},
                                [this, menu, alive = std::weak_ptr(alive_)](
                                    const std::vector<std::filesystem::path>& chosen) {
                                    if (alive.lock() && !chosen.empty()) {
                                        bookmark(chosen.front(), menu);
                                    }
                                });
}

void Destinations::bookmark(const std::filesystem::path& folder, DestinationMenu menu) {
    dispatch_async_back(vantor_, [this, &vantor = vantor_, alive = std::weak_ptr(alive_), folder,
                                  menu] {
        dispatch_async_main(vantor, [this, alive, folder, menu,
                                     created = vantor.ports().folderAccess.createBookmark(folder)] {
            if (alive.lock()) addDestination(folder, created, menu);
        });
    });
}

void Destinations::addDestination(const std::filesystem::path& folder,
                                  const BookmarkResult& created, DestinationMenu menu) {
    if (!created.bookmark) {
        vn_log_level(LogError, "Error creating bookmark: %@", created.error);
        return;
    }
    bool added = false;
    const bool stored = vantor_.preferences().edit([&](PreferenceValues& values) {
        added = reelvane::addDestination(
            values, {.name = lastComponent(folder), .bookmark = *created.bookmark});
    });
    if (!stored) {
        vn_log_level(LogError, "Error: the destination %@ could not be stored", folder);
        return;
    }
    if (!added) {
        refuseDuplicate();
        return;
    }
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

void Destinations::pickPreferencesDestination(std::size_t menuIndex) {
    const auto shown = preferencesPopUp_.items();
    rebuildPreferencesDestinationPopUp();
    if (menuIndex + 1 == shown.size()) {
        chooseNewDestination(DestinationMenu::Preferences);
        return;
    }
    // Another process may have changed the folders since the menu was made.
    if (preferencesPopUp_.items() != shown || !isDestination(menuIndex)) return;
    vantor_.preferences().setDefaultInt(kDefaultDestinationKey, static_cast<int>(menuIndex));
    preferencesPopUp_.selectItemAtIndex(menuIndex);
}

void Destinations::removeSavedDestination(const BookmarkData& bookmark) {
    rearrange([&bookmark](PreferenceValues& values) { removeDestination(values, bookmark); });
}

void Destinations::moveSavedDestination(const BookmarkData& bookmark, std::size_t place) {
    rearrange([&](PreferenceValues& values) { moveDestination(values, bookmark, place); });
}

/// The file sheet keeps meaning the folder that it showed, while there is one.
void Destinations::rearrange(const std::function<void(PreferenceValues&)>& edit) {
    const auto before = savedDestinations(vantor_.preferences());
    vantor_.preferences().edit(edit);
    rebuildPreferencesDestinationPopUp();
    const auto shown = destinationPopUp_.selectedIndex();
    if (!shown) return;
    const auto row = rowAfterwards(before, savedDestinations(vantor_.preferences()), *shown);
    rebuildDestinationPopUp();
    if (row) destinationPopUp_.selectItemAtIndex(*row);
}

bool Destinations::isDestination(std::size_t menuIndex) const {
    return menuIndex != kSeparatorDestination &&
           menuIndex < kFirstFolderDestination + savedDestinations(vantor_.preferences()).size();
}

BookmarkData Destinations::savedFolder(std::size_t menuIndex) const {
    const auto saved = savedDestinations(vantor_.preferences());
    return saved.at(menuIndex - kFirstFolderDestination).bookmark;
}

}  // namespace reelvane
