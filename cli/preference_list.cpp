#include "cli/preference_list.h"

#include <algorithm>

#include "app/preference_table.h"
#include "cli/text_lines.h"
#include "cli/text_width.h"
#include "support/make_string.h"
#include "support/preferences.h"
#include "support/utf8.h"

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

}  // namespace

std::vector<PreferenceRow> preferenceRows(const Preferences& preferences) {
    std::vector<PreferenceRow> rows;
    for (const auto& entry : preferenceTable()) {
        const std::string defaultValue(entry.defaultText);
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
                           entry.defaultText.empty() ? "empty" : entry.defaultText, entry.meaning);
    }
    return page;
}

}  // namespace reelvane
