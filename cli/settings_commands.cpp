#include "cli/settings_commands.h"

#include <algorithm>
#include <vector>

#include "app/destinations.h"
#include "app/preference_table.h"
#include "cli/arguments.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/input_check.h"
#include "cli/json_lines.h"
#include "cli/text_reporter.h"
#include "support/make_string.h"
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

namespace {

void list(const CommandContext& context, PreferencesRequest::Form form) {
    auto& console = context.console;
    const auto rows = preferenceRows(context.preferences);
    switch (form) {
        case PreferencesRequest::Form::Table:
            console.line(preferenceListText(rows, Console::columns()));
            break;
        case PreferencesRequest::Form::Json:
            for (const auto& row : rows) console.line(preferenceLine(row));
            break;
        case PreferencesRequest::Form::Markdown:
            console.write(preferenceReference());
            break;
    }
}

void printValue(const CommandContext& context, const std::string& key) {
    const auto stored = context.preferences.defaultObject(key);
    const auto* const entry = findPreference(key);
    const auto fallback = entry == nullptr ? std::string() : defaultText(*entry);
    context.console.line(printable(stored.value_or(fallback)));
}

/// Stores the value, or forgets it when there is none.
int store(const CommandContext& context, const PreferencesRequest& request) {
    const bool done = context.store.edit([&request](PreferenceValues& values) {
        if (request.action == PreferencesRequest::Action::Set) {
            values.insert_or_assign(request.key, request.value);
            // Numbered for the present menu: no later start is to move it up.
            if (request.key == kDefaultDestination.key) {
                values.insert_or_assign(std::string(kHasUpgradedFromPre13.key), "1");
            }
        } else {
            values.erase(request.key);
        }
    });
    if (done) return kExitSuccess;
    context.console.error(
        makeString("The preference %@ could not be stored. Please check that the folder of the "
                   "preferences can be written to and that its disk is not full.",
                   request.key));
    return kExitFailure;
}

}  // namespace

int runPreferences(const CommandContext& context, const PreferencesRequest& request) {
    switch (request.action) {
        case PreferencesRequest::Action::List:
            list(context, request.form);
            break;
        case PreferencesRequest::Action::Get:
            printValue(context, request.key);
            break;
        case PreferencesRequest::Action::Set:
        case PreferencesRequest::Action::Reset:
            return store(context, request);
    }
    return context.console.isClosed() ? kExitFailure : kExitSuccess;
}

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

namespace {

constexpr std::size_t kMeaningIndent = 4;
constexpr std::size_t kLongestValue = 24;

constexpr std::string_view kReferenceHead =
    R"(# Preferences

The desktop application and the command line share one set of preferences. They stand in
`$XDG_CONFIG_HOME` (by default `~/.config`), in a folder named after the application, and can be
changed there by hand as well.

    reelvane-cli preferences list              # all of them, with their present values
    reelvane-cli preferences set AACBitrate 3  # for good
    reelvane-cli convert --set AACBitrate=3 Film.mkv  # for one run

This page is what `reelvane-cli preferences list --markdown` prints.

| Key | Type | Default | Meaning |
| --- | --- | --- | --- |
)";

std::string shown(const std::string& value) {
    return value.empty() ? "-" : elidedMiddle(printable(value), kLongestValue);
}

std::string columnsText(const PreferenceRow& row, std::size_t keyWidth, std::size_t valueWidth) {
    return padded(row.key, keyWidth) + "  " + padded(shown(row.value), valueWidth) + "  " +
           padded(shown(row.defaultValue), 7) + "  " + row.type;
}

}  // namespace

std::vector<PreferenceRow> preferenceRows(const Preferences& preferences) {
    std::vector<PreferenceRow> rows;
    for (const auto& entry : preferenceTable()) {
        const auto defaultValue = defaultText(entry);
        rows.push_back({.key = std::string(entry.key),
                        .value = preferences.defaultObject(entry.key).value_or(defaultValue),
                        .defaultValue = defaultValue,
                        .type = typeText(entry),
                        .meaning = std::string(entry.meaning)});
    }
    return rows;
}

std::string preferenceListText(std::span<const PreferenceRow> rows, std::size_t columns) {
    std::size_t keyWidth = 0;
    std::size_t valueWidth = 5;
    for (const auto& row : rows) {
        keyWidth = std::max(keyWidth, displayWidth(row.key));
        valueWidth = std::max(valueWidth, displayWidth(shown(row.value)));
    }
    const PreferenceRow head{
        .key = "KEY", .value = "VALUE", .defaultValue = "DEFAULT", .type = "TYPE"};
    auto text = columnsText(head, keyWidth, valueWidth);
    for (const auto& row : rows) {
        text += "\n" + columnsText(row, keyWidth, valueWidth) + "\n" +
                wrapped(row.meaning, " ", columns, kMeaningIndent);
    }
    return text;
}

std::string preferenceReference() {
    std::string page(kReferenceHead);
    for (const auto& entry : preferenceTable()) {
        page += makeString("| `%@` | %@ | %@ | %@ |\n", entry.key, typeText(entry),
                           defaultText(entry), entry.meaning);
    }
    return page;
}

}  // namespace reelvane
