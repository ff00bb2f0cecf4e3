#include "cli/destinations_command.h"

#include <utility>
#include <vector>

#include "app/destinations.h"
#include "cli/arguments.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/input_check.h"
#include "cli/json_lines.h"
#include "support/make_string.h"
#include "support/ports/preferences_store.h"
#include "support/preferences.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kNotStored =
    "The saved destinations could not be stored. Please check that the folder of the preferences "
    "can be written to and that its disk is not full.";

int fail(const CommandContext& context, std::string_view sentence) {
    context.console.error(sentence);
    return kExitFailure;
}

std::string inQuotes(std::string_view text) {
    return makeString("'%@'", Fennimar::validUtf8(text));
}

/// A saved destination, or the one sentence on why there is none of this name: "There is no saved
/// destination named 'Moives'. Did you mean 'Movies'?"
struct DestinationAnswer {
    std::optional<SavedDestination> destination{};
    std::string problem{};
};

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

int listDestinations(const CommandContext& context, bool json) {
    for (const auto& saved : savedDestinations(context.preferences)) {
        const auto folder = context.folderAccess.resolveBookmark(saved.bookmark).folder;
        const auto known = printable(context.folderAccess.pathOf(saved.bookmark).native());
        const auto path = folder ? printable(folder->native()) : known + " (not there)";
        context.console.line(json ? destinationLine(saved.name, folder)
                                  : makeString("%@  %@", printable(saved.name), path));
    }
    return context.console.isClosed() ? kExitFailure : kExitSuccess;
}

int addFolder(const CommandContext& context, const std::string& given) {
    auto folder = absolutePath(given).lexically_normal();
    if (!folder.has_filename()) folder = folder.parent_path();
    const auto created = context.folderAccess.createBookmark(folder);
    if (!created.bookmark) {
        return fail(context, makeString("The folder '%@' cannot be saved as a destination: %@.",
                                        Fennimar::validUtf8(given), created.error));
    }
    bool added = false;
    const bool stored = context.store.edit([&](PreferenceValues& values) {
        added = addDestination(values,
                               {.name = destinationName(folder), .bookmark = *created.bookmark});
    });
    if (!stored) return fail(context, kNotStored);
    if (added) return kExitSuccess;
    return fail(context, kAlreadyBookmarked);
}

int removeNamed(const CommandContext& context, const std::string& name) {
    const auto found =
        destinationSavedAs(savedDestinations(context.preferences), context.folderAccess, name);
    if (!found.destination) return fail(context, found.problem);
    const bool stored = context.store.edit(
        [&](PreferenceValues& values) { removeDestination(values, found.destination->bookmark); });
    return stored ? kExitSuccess : fail(context, kNotStored);
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

int runDestinations(const CommandContext& context, const DestinationsRequest& request) {
    switch (request.action) {
        case DestinationsRequest::Action::List:
            return listDestinations(context, request.json);
        case DestinationsRequest::Action::Add:
            return addFolder(context, request.name);
        case DestinationsRequest::Action::Remove:
            return removeNamed(context, request.name);
    }
    return kExitFailure;
}

}  // namespace reelvane
