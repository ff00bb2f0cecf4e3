#include "app/preference_keys.h"
#include "app/preference_table.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/preference_list.h"
#include "support/make_string.h"
#include "support/preferences.h"
#include "support/utf8.h"

namespace reelvane {
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
    const std::string fallback(entry == nullptr ? std::string_view() : entry->defaultText);
    context.console.line(printable(stored.value_or(fallback)));
}

/// Stores the value, or forgets it when there is none.
int store(const CommandContext& context, const PreferencesRequest& request) {
    const bool done = context.store.edit([&request](PreferenceValues& values) {
        if (request.action == PreferencesRequest::Action::Set) {
            values.insert_or_assign(request.key, request.value);
            // Numbered for the present menu: no later start is to move it up.
            if (request.key == kDefaultDestinationKey) {
                values.insert_or_assign(std::string(kHasUpgradedFromPre13Key), "1");
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

}  // namespace reelvane
