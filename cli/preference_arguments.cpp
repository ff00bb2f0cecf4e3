#include "cli/preference_arguments.h"

#include <vector>

#include "app/preference_table.h"
#include "cli/suggestion.h"
#include "cli/usage_error.h"
#include "support/make_string.h"

namespace reelvane {

const PreferenceEntry& preferenceNamed(std::string_view key) {
    const auto* const entry = findPreference(key);
    if (entry != nullptr) return *entry;
    std::vector<std::string> keys;
    for (const auto& known : preferenceTable()) keys.emplace_back(known.key);
    throw UsageError(
        makeString("There is no preference named '%@'.%@", key, suggestion(key, keys)));
}

std::string preferenceValue(const PreferenceEntry& entry, std::string_view typed) {
    auto text = storedText(entry, typed);
    if (text) return *std::move(text);
    throw UsageError(makeString("'%@' is no value for the preference %@, which takes: %@.", typed,
                                entry.key, typeText(entry)));
}

PreferenceOverride preferenceOverride(std::string_view text) {
    const auto equals = text.find('=');
    if (equals == std::string_view::npos) {
        throw UsageError(makeString("'%@' is not of the form KEY=VALUE.", text));
    }
    const auto& entry = preferenceNamed(text.substr(0, equals));
    return {.key = std::string(entry.key), .text = preferenceValue(entry, text.substr(equals + 1))};
}

}  // namespace reelvane
