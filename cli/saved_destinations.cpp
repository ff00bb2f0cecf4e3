#include "cli/saved_destinations.h"

#include <algorithm>

#include "cli/suggestion.h"
#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {

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

std::string unknownDestination(const SavedDestinations& known, std::string_view name) {
    std::vector<std::string> names;
    names.reserve(known.size());
    for (const auto& destination : known) names.push_back(Fennimar::validUtf8(destination.name));
    return makeString("There is no saved destination named '%@'.%@", Fennimar::validUtf8(name),
                      suggestion(name, names));
}

}  // namespace reelvane
