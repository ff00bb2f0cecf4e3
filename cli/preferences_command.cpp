#include <algorithm>
#include <span>
#include <vector>

#include "app/preference_table.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/json_lines.h"
#include "support/make_string.h"
#include "support/ports/preferences_store.h"
#include "support/preferences.h"
#include "support/strings.h"

namespace reelvane {
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

void listPreferences(const CommandContext& context, PreferencesRequest::Form form) {
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
            listPreferences(context, request.form);
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

}  // namespace reelvane
