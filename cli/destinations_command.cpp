#include "app/destinations.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_check.h"
#include "cli/json_lines.h"
#include "cli/saved_destinations.h"
#include "support/make_string.h"
#include "support/preferences.h"
#include "support/strings.h"
#include "support/utf8.h"

namespace reelvane {
namespace {

constexpr std::string_view kNotStored =
    "The saved destinations could not be stored. Please check that the folder of the preferences "
    "can be written to and that its disk is not full.";

int fail(const CommandContext& context, std::string_view sentence) {
    context.console.error(sentence);
    return kExitFailure;
}

int list(const CommandContext& context, bool json) {
    for (const auto& saved : savedDestinations(context.preferences)) {
        const auto folder = context.folderAccess.resolveBookmark(saved.bookmark).folder;
        const auto known = printable(context.folderAccess.pathOf(saved.bookmark).native());
        const auto path = folder ? printable(folder->native()) : known + " (not there)";
        context.console.line(json ? destinationLine(saved.name, folder)
                                  : makeString("%@  %@", printable(saved.name), path));
    }
    return context.console.isClosed() ? kExitFailure : kExitSuccess;
}

int add(const CommandContext& context, const std::string& given) {
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

int remove(const CommandContext& context, const std::string& name) {
    const auto found =
        destinationSavedAs(savedDestinations(context.preferences), context.folderAccess, name);
    if (!found.destination) return fail(context, found.problem);
    const bool stored = context.store.edit(
        [&](PreferenceValues& values) { removeDestination(values, found.destination->bookmark); });
    return stored ? kExitSuccess : fail(context, kNotStored);
}

}  // namespace

int runDestinations(const CommandContext& context, const DestinationsRequest& request) {
    switch (request.action) {
        case DestinationsRequest::Action::List:
            return list(context, request.json);
        case DestinationsRequest::Action::Add:
            return add(context, request.name);
        case DestinationsRequest::Action::Remove:
            return remove(context, request.name);
    }
    return kExitFailure;
}

}  // namespace reelvane
