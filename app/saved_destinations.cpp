#include "app/saved_destinations.h"

#include <algorithm>
#include <map>
#include <utility>

#include "app/preference_table.h"
#include "support/make_string.h"
#include "support/preference_text.h"
#include "support/preferences.h"
#include "support/strings.h"

namespace reelvane {
namespace {

SavedDestinations joinedLists(std::vector<std::string> bookmarks, std::vector<std::string> names) {
    names.resize(bookmarks.size());  // a store that was edited by hand
    SavedDestinations destinations;
    for (std::size_t i = 0; i < bookmarks.size(); ++i) {
        destinations.push_back({.name = std::move(names[i]), .bookmark = std::move(bookmarks[i])});
    }
    return destinations;
}

std::vector<std::string> storedList(const PreferenceValues& values, std::string_view key) {
    const auto found = values.find(key);
    if (found == values.end()) return {};
    return listFromPreferenceText(found->second).value_or(std::vector<std::string>());
}

SavedDestinations storedDestinations(const PreferenceValues& values) {
    return joinedLists(storedList(values, kDestinationBookmarks.key),
                       storedList(values, kDestinationNames.key));
}

void store(PreferenceValues& values, const SavedDestinations& destinations) {
    std::vector<std::string> bookmarks;
    std::vector<std::string> names;
    for (const auto& destination : destinations) {
        bookmarks.push_back(destination.bookmark);
        names.push_back(destination.name);
    }
    values.insert_or_assign(std::string(kDestinationBookmarks.key), preferenceText(bookmarks));
    values.insert_or_assign(std::string(kDestinationNames.key), preferenceText(names));
}

void rearrange(PreferenceValues& values, const SavedDestinations& before,
               const SavedDestinations& after) {
    store(values, after);
    const auto chosen = values.find(kDefaultDestination.key);
    if (chosen == values.end()) return;
    const auto row = static_cast<std::size_t>(Fennimar::leadingInteger(chosen->second));
    const auto choice = destinationOfRow(before, row);
    if (!choice || choice->kind != DestinationChoice::Kind::SavedFolder) return;
    const auto now = rowOfDestination(after, *choice);
    chosen->second = preferenceText(static_cast<int>(now.value_or(kAskDestination)));
}

}  // namespace

std::string destinationName(const std::filesystem::path& folder) {
    const auto name = (folder.has_filename() ? folder : folder.parent_path()).filename();
    return name.empty() ? folder.native() : name.native();  // the root has no name of its own
}

SavedDestinations toldApart(SavedDestinations destinations, const FolderAccess& access) {
    std::map<std::string, int> counts;
    for (auto& destination : destinations) {
        auto& name = destination.name;
        if (name.empty()) name = destinationName(access.pathOf(destination.bookmark));
        ++counts[name];
    }
    for (auto& destination : destinations) {
        if (counts[destination.name] == 1) continue;
        const auto parent = access.pathOf(destination.bookmark).parent_path();
        destination.name = makeString("%@ (%@)", destination.name, parent.native());
    }
    return destinations;
}

SavedDestinations savedDestinations(const Preferences& preferences) {
    return joinedLists(get(preferences, kDestinationBookmarks),
                       get(preferences, kDestinationNames));
}

std::optional<DestinationChoice> destinationOfRow(const SavedDestinations& folders,
                                                  std::size_t row) {
    using Kind = DestinationChoice::Kind;
    if (row == kAskDestination) return DestinationChoice{.kind = Kind::Ask};
    if (row == kNextToSourceDestination) return DestinationChoice{.kind = Kind::NextToSource};
    if (row < kFirstFolderDestination) return std::nullopt;
    const auto place = row - kFirstFolderDestination;
    if (place >= folders.size()) return std::nullopt;
    return DestinationChoice{.kind = Kind::SavedFolder, .folder = folders[place].bookmark};
}

std::optional<std::size_t> rowOfDestination(const SavedDestinations& folders,
                                            const DestinationChoice& choice) {
    using Kind = DestinationChoice::Kind;
    if (choice.kind == Kind::Ask) return kAskDestination;
    if (choice.kind == Kind::NextToSource) return kNextToSourceDestination;
    const auto found = std::ranges::find(folders, choice.folder, &SavedDestination::bookmark);
    if (found == folders.end()) return std::nullopt;
    return kFirstFolderDestination + static_cast<std::size_t>(found - folders.begin());
}

bool addDestination(PreferenceValues& values, const SavedDestination& destination) {
    auto destinations = storedDestinations(values);
    const auto known =
        std::ranges::find(destinations, destination.bookmark, &SavedDestination::bookmark);
    if (known != destinations.end()) return false;
    destinations.push_back(destination);
    store(values, destinations);
    return true;
}

bool removeDestination(PreferenceValues& values, const BookmarkData& bookmark) {
    const auto before = storedDestinations(values);
    auto after = before;
    const auto found = std::ranges::find(after, bookmark, &SavedDestination::bookmark);
    if (found == after.end()) return false;
    after.erase(found);
    rearrange(values, before, after);
    return true;
}

void dropLostDestinations(PreferenceValues& values, const std::vector<BookmarkData>& lost) {
    auto destinations = storedDestinations(values);
    std::erase_if(destinations, [&lost](const SavedDestination& destination) {
        return std::ranges::find(lost, destination.bookmark) != lost.end();
    });
    store(values, destinations);
}

bool moveDestination(PreferenceValues& values, const BookmarkData& bookmark, std::size_t place) {
    const auto before = storedDestinations(values);
    auto after = before;
    const auto found = std::ranges::find(after, bookmark, &SavedDestination::bookmark);
    if (found == after.end()) return false;
    auto moved = std::move(*found);
    after.erase(found);
    after.insert(after.begin() + static_cast<std::ptrdiff_t>(std::min(place, after.size())),
                 std::move(moved));
    rearrange(values, before, after);
    return true;
}

}  // namespace reelvane
