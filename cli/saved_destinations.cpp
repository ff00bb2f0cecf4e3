#include "cli/saved_destinations.h"

#include <algorithm>

#include "app/destinations.h"
#include "app/preference_keys.h"
#include "cli/suggestion.h"
#include "support/make_string.h"
#include "support/preference_text.h"
#include "support/preferences.h"
#include "support/strings.h"

namespace reelvane {
namespace {

std::vector<SavedDestination> joinedLists(std::vector<std::string> bookmarks,
                                          std::vector<std::string> names) {
    names.resize(bookmarks.size());  // a store that was edited by hand
    std::vector<SavedDestination> destinations;
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

std::vector<SavedDestination> storedDestinations(const PreferenceValues& values) {
    return joinedLists(storedList(values, kDestinationBookmarksKey),
                       storedList(values, kDestinationNamesKey));
}

void store(PreferenceValues& values, const std::vector<SavedDestination>& destinations) {
    std::vector<std::string> bookmarks;
    std::vector<std::string> names;
    for (const auto& destination : destinations) {
        bookmarks.push_back(destination.bookmark);
        names.push_back(destination.name);
    }
    values.insert_or_assign(std::string(kDestinationBookmarksKey), preferenceText(bookmarks));
    values.insert_or_assign(std::string(kDestinationNamesKey), preferenceText(names));
}

}  // namespace

std::vector<SavedDestination> savedDestinations(const Preferences& preferences) {
    const std::vector<std::string> none;
    return joinedLists(preferences.defaultArray(kDestinationBookmarksKey).value_or(none),
                       preferences.defaultArray(kDestinationNamesKey).value_or(none));
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

bool removeDestination(PreferenceValues& values, std::string_view name) {
    auto destinations = storedDestinations(values);
    const auto found = std::ranges::find(destinations, name, &SavedDestination::name);
    if (found == destinations.end()) return false;
    const auto row =
        static_cast<int>(kFirstFolderDestination) + static_cast<int>(found - destinations.begin());
    destinations.erase(found);
    store(values, destinations);

    const auto chosen = values.find(kDefaultDestinationKey);
    if (chosen == values.end()) return true;
    const auto index = Fennimar::leadingInteger(chosen->second);
    if (index == row) {
        chosen->second = preferenceText(static_cast<int>(kAskDestination));
    } else if (index > row) {
        chosen->second = preferenceText(index - 1);
    }
    return true;
}

FolderAnswer folderSavedAs(const Preferences& preferences, FolderAccess& access,
                           std::string_view name) {
    const auto destinations = savedDestinations(preferences);
    const auto found = std::ranges::find(destinations, name, &SavedDestination::name);
    if (found == destinations.end()) return {.problem = unknownDestination(destinations, name)};
    const auto resolved = access.resolveBookmark(found->bookmark);
    if (resolved.folder && access.startAccessing(*resolved.folder)) {
        return {.folder = resolved.folder};
    }
    return {.problem = makeString(
                "The saved destination '%@' cannot be written to. Please mount its disk, or remove "
                "it with: reelvane-cli destinations remove.",
                Fennimar::validUtf8(name))};
}

std::string unknownDestination(const std::vector<SavedDestination>& known, std::string_view name) {
    std::vector<std::string> names;
    names.reserve(known.size());
    for (const auto& destination : known) names.push_back(Fennimar::validUtf8(destination.name));
    return makeString("There is no saved destination named '%@'.%@", Fennimar::validUtf8(name),
                      suggestion(name, names));
}

}  // namespace reelvane
