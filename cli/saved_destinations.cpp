#include "cli/saved_destinations.h"

#include <vector>

#include "cli/command_line.h"
#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {

namespace {

std::string inQuotes(std::string_view text) {
    return makeString("'%@'", Fennimar::validUtf8(text));
}

}  // namespace

FolderAnswer folderSavedAs(const Preferences& preferences, FolderAccess& access,
                           std::string_view name) {
    const auto found = destinationSavedAs(savedDestinations(preferences), access, name);
    if (!found.destination) return {.problem = found.problem};
    return folderOf(*found.destination, access);
}

FolderAnswer folderOf(const SavedDestination& saved, FolderAccess& access) {
    const auto resolved = access.resolveBookmark(saved.bookmark);
    if (resolved.folder && access.startAccessing(*resolved.folder)) {
        return {.folder = resolved.folder};
    }
    return {.problem = makeString(
                "The saved destination %@ cannot be written to. Please mount its disk, or remove "
                "it with: reelvane-cli destinations remove.",
                inQuotes(saved.name))};
}

DestinationAnswer destinationSavedAs(const SavedDestinations& saved, const FolderAccess& access,
                                     std::string_view nameOrPath) {
    std::vector<SavedDestination> named;
    std::vector<std::string> names;
    for (const auto& destination : saved) {
        if (access.pathOf(destination.bookmark) == nameOrPath) return {.destination = destination};
        if (destination.name == nameOrPath) named.push_back(destination);
        names.push_back(Fennimar::validUtf8(destination.name));
    }
    if (named.empty()) {
        return {.problem = makeString("There is no saved destination named %@.%@",
                                      inQuotes(nameOrPath), suggestion(nameOrPath, names))};
    }
    if (named.size() == 1) return {.destination = named.front()};
    std::string paths;
    for (const auto& destination : named) {
        if (!paths.empty()) paths += ", ";
        paths += inQuotes(access.pathOf(destination.bookmark).native());
    }
    return {.problem = makeString("Several saved destinations are named %@. Please give the path "
                                  "of the one that you mean: %@.",
                                  inQuotes(nameOrPath), paths)};
}

}  // namespace reelvane
