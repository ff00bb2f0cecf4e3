#include "app/destinations.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/preference_table.h"
#include "app/saved_destinations.h"
#include "app/settings_reader.h"
#include "support/alerts.h"
#include "support/logging.h"
#include "support/ports/panels.h"
#include "support/ports/translations.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

/// The folders that the menu shows, which may have changed since.
SavedDestinations shownFolders(const PopUpMenu& menu) {
    SavedDestinations folders;
    const auto& items = menu.items();
    for (auto row = kFirstFolderDestination; row < items.size(); ++row) {
        if (items[row].isSeparator() || items[row].isCommand) break;
        folders.push_back({.name = items[row].title, .bookmark = items[row].folder});
    }
    return folders;
}

/// The same destination in another list of rows; absent where it is not there.
std::optional<std::size_t> rowOf(const PopUpMenu& menu, const DestinationChoice& choice) {
    return rowOfDestination(shownFolders(menu), choice);
}

bool isChoice(const PopUpMenu& menu, std::size_t row) {
    return destinationOfRow(shownFolders(menu), row).has_value();
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
                                           const SavedDestinations& folders) {
    std::vector<MenuItem> items{{.title = titles.ask}, {.title = titles.nextToSource}, {}};
    for (const auto& folder : folders) {
        items.push_back({.title = folder.name, .folder = folder.bookmark});
    }
    if (!folders.empty()) items.emplace_back();
    items.push_back({.title = titles.add, .isCommand = true});
    return items;
}

std::optional<DestinationChoice> chosenDestination(const PopUpMenu& menu) {
    const auto row = menu.selectedIndex();
    return row ? destinationOfRow(shownFolders(menu), *row) : std::nullopt;
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

void Destinations::takeGrantedFolders() {
    for (auto& granted : vantor_.ports().folderAccess.grantedFolders()) {
        addOpenedFolder(std::move(granted));
    }
    rebuildPreferencesDestinationPopUp();
}

void Destinations::validateAtLaunch() {
    errands_.run(
        [&access = vantor_.ports().folderAccess, saved = savedDestinations(vantor_.preferences())] {
            return tryAll(access, saved);
        },
        [this](TriedFolders tried) { validated(std::move(tried.opened), tried.lost); });
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
    touched_ = false;
    rebuild(destinationPopUp_);
}

void Destinations::rebuildPreferencesDestinationPopUp() {
    rebuild(preferencesPopUp_);
    if (!destinationPopUp_.selectedIndex()) return;  // no movie was shown yet
    const auto chosen = chosenDestination(destinationPopUp_);
    rebuild(destinationPopUp_);
    const auto row = touched_ && chosen ? rowOf(destinationPopUp_, *chosen) : std::nullopt;
    touched_ = row.has_value();
    if (row) destinationPopUp_.selectItemAtIndex(*row);
}

void Destinations::rebuild(PopUpMenu& menu) {
    const auto& ports = vantor_.ports();
    menu.setItems(destinationMenuItems(
        {.ask = ports.translations.localized("Ask for Each File"),
         .nextToSource = ports.translations.localized("Next to the Source File"),
         .add = ports.translations.localized("Add a Destination…")},
        toldApart(savedDestinations(vantor_.preferences()), ports.folderAccess)));
    const auto row = static_cast<std::size_t>(get(vantor_.preferences(), kDefaultDestination));
    menu.selectItemAtIndex(isChoice(menu, row) ? row : kAskDestination);
}

void Destinations::chooseNewDestination(DestinationMenu menu) {
    const auto parent = menu == DestinationMenu::FileSheet ? PanelParent::MainWindow
                                                           : PanelParent::PreferencesWindow;
    vantor_.ports().panels.open({.parent = parent, .chooseFolder = true},
                                errands_.whileHere([this, menu](const auto& chosen) {
                                    if (!chosen.empty()) bookmark(chosen.front(), menu);
                                }));
}

void Destinations::bookmark(const std::filesystem::path& folder, DestinationMenu menu) {
    errands_.run(
        [&access = vantor_.ports().folderAccess, folder] { return access.createBookmark(folder); },
        [this, folder, menu](const BookmarkResult& created) {
            addDestination(folder, created, menu);
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
            values, {.name = destinationName(folder), .bookmark = *created.bookmark});
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
    auto& shown = menu == DestinationMenu::Preferences ? preferencesPopUp_ : destinationPopUp_;
    const DestinationChoice choice{.kind = DestinationChoice::Kind::SavedFolder,
                                   .folder = *created.bookmark};
    if (const auto row = rowOf(shown, choice)) pick(menu, *row);
}

void Destinations::refuseDuplicate() {
    alert_apptitled(vantor_, kAlreadyBookmarked, "D'oh");
    storeDefault(kAskDestination);
    if (destinationPopUp_.selectedIndex()) rebuildDestinationPopUp();
}

void Destinations::storeDefault(std::size_t row) {
    set(vantor_.preferences(), kDefaultDestination, static_cast<int>(row));
    rebuildPreferencesDestinationPopUp();
}

void Destinations::pick(DestinationMenu menu, std::size_t row) {
    auto& shown = menu == DestinationMenu::Preferences ? preferencesPopUp_ : destinationPopUp_;
    if (row < shown.items().size() && shown.items()[row].isCommand) {
        chooseNewDestination(menu);
        return;
    }
    if (!isChoice(shown, row)) return;
    shown.selectItemAtIndex(row);
    if (menu == DestinationMenu::FileSheet) {
        touched_ = true;
        return;
    }
    // Another process may have changed the folders since the menu was made.
    const auto picked = chosenDestination(shown);
    rebuildPreferencesDestinationPopUp();
    if (const auto now = picked ? rowOf(shown, *picked) : std::nullopt) storeDefault(*now);
}

void Destinations::removeSavedDestination(const BookmarkData& bookmark) {
    rearrange([&bookmark](PreferenceValues& values) { removeDestination(values, bookmark); });
}

void Destinations::moveSavedDestination(const BookmarkData& bookmark, std::size_t place) {
    rearrange([&](PreferenceValues& values) { moveDestination(values, bookmark, place); });
}

void Destinations::rearrange(const std::function<void(PreferenceValues&)>& edit) {
    vantor_.preferences().edit(edit);
    rebuildPreferencesDestinationPopUp();
}

}  // namespace reelvane
