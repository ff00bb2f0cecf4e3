#include "app/preference_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "support/make_string.h"
#include "support/preference_text.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kEmptyList = "()";  // see support/preference_text.h

constexpr PreferenceEntry row(const Preference<bool>& preference) {
    return {.key = preference.key,
            .type = PreferenceType::Boolean,
            .defaultNumber = preference.defaultValue ? 1.0 : 0.0,
            .range = {.maximum = 1},
            .otherwise = 1,
            .registered = preference.registered,
            .meaning = preference.meaning};
}

template <typename T>
constexpr PreferenceEntry row(const Preference<T>& preference) {
    return {.key = preference.key,
            .type = std::is_same_v<T, int> ? PreferenceType::Integer : PreferenceType::Number,
            .defaultNumber = static_cast<double>(preference.defaultValue),
            .range = preference.range,
            .otherwise = preference.otherwise,
            .registered = preference.registered,
            .meaning = preference.meaning};
}

constexpr PreferenceEntry row(const ListPreference& preference) {
    return {.key = preference.key,
            .type = preference.ofData ? PreferenceType::DataList : PreferenceType::TextList,
            .registered = preference.registered,
            .meaning = preference.meaning};
}

constexpr auto kTable = std::to_array<PreferenceEntry>({row(kConversionPreset),
                                                        row(kIncludeSurroundTrack),
                                                        row(kIncludeSurroundTrackTranscoded),
                                                        row(kWelcomeShown),
                                                        row(kDefaultExtension),
                                                        row(kAACBitrate),
                                                        row(kAC3StereoBitrate),
                                                        row(kAC3SurroundBitrate),
                                                        row(kAudioVolume),
                                                        row(kAutoAdd),
                                                        row(kAutoClean),
                                                        row(kAutoRemove),
                                                        row(kAutoRemoveType),
                                                        row(kConversions),
                                                        row(kHasUpgradedFromPre13),
                                                        row(kExternalSubtitleEncoding),
                                                        row(kDefaultAudio),
                                                        row(kDefaultDestination),
                                                        row(kFixSubtitleDuration),
                                                        row(kDestinationBookmarks),
                                                        row(kDestinationNames),
                                                        row(kDisableBuiltinSubtitles),
                                                        row(kQuitAfterConversion),
                                                        row(kDTSDownmix),
                                                        row(kAC3Downmix),
                                                        row(kCustomAC3Handling),
                                                        row(kCustomAC351Handling),
                                                        row(kCustomDTSHandling),
                                                        row(kCustomDTS51Handling),
                                                        row(kCustomVorbisHandling),
                                                        row(kCustomMP3Handling),
                                                        row(kCustomUnknownHandling),
                                                        row(kInsertJobsAtBottom),
                                                        row(kProduceStreamableFiles),
                                                        row(kHEAACConvert),
                                                        row(kConvertedFileCount),
                                                        row(kUnfinishedOutput)});

bool isList(const PreferenceEntry& entry) {
    return entry.type == PreferenceType::TextList || entry.type == PreferenceType::DataList;
}

bool fits(const PreferenceRange& range, int value) {
    return value >= range.minimum && value <= range.maximum && value != range.excluded;
}

template <typename T>
std::optional<T> wholeNumber(std::string_view text) {
    T value{};
    const auto* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return value;
}

std::optional<std::string> storedBoolean(std::string_view typed) {
    const auto word = Fennimar::lowercased(typed);
    for (const auto* const yes : {"1", "yes", "true", "on"}) {
        if (word == yes) return "1";
    }
    for (const auto* const no : {"0", "no", "false", "off"}) {
        if (word == no) return "0";
    }
    return std::nullopt;
}

std::optional<std::string> storedInteger(const PreferenceEntry& entry, std::string_view typed) {
    const auto value = wholeNumber<int>(typed);
    if (!value || !fits(entry.range, *value)) return std::nullopt;
    return std::to_string(*value);
}

std::optional<std::string> storedNumber(const PreferenceEntry& entry, std::string_view typed) {
    const auto value = wholeNumber<float>(typed);
    // The comparison is false for what is no number, which so does not fit either.
    if (!value || !(*value >= float(entry.range.minimum) && *value <= float(entry.range.maximum))) {
        return std::nullopt;
    }
    std::array<char, 32> text{};
    const auto plain = *value == 0 ? 0.0F : *value;  // no negative zero
    const auto written = std::to_chars(text.data(), text.data() + text.size(), plain);
    return std::string(text.data(), written.ptr);
}

std::string rangeText(const PreferenceRange& range) {
    auto text = range.maximum == kNoMaximum ? makeString("%i or more", range.minimum)
                                            : makeString("%i to %i", range.minimum, range.maximum);
    if (range.excluded) text += makeString(" but not %i", *range.excluded);
    return text;
}

}  // namespace

std::vector<std::string> get(const Preferences& preferences, const ListPreference& preference) {
    return preferences.defaultArray(preference.key).value_or(std::vector<std::string>());
}

std::span<const PreferenceEntry> preferenceTable() {
    return kTable;
}

const PreferenceEntry* findPreference(std::string_view key) {
    const auto* const found = std::ranges::find(kTable, key, &PreferenceEntry::key);
    return found == kTable.end() ? nullptr : found;
}

std::string defaultText(const PreferenceEntry& entry) {
    return isList(entry) ? std::string(kEmptyList)
                         : preferenceText(static_cast<float>(entry.defaultNumber));
}

int effectiveInteger(const PreferenceEntry& entry, int stored) {
    return fits(entry.range, stored)
               ? stored
               : entry.otherwise.value_or(static_cast<int>(entry.defaultNumber));
}

PreferenceValues registeredDefaults() {
    PreferenceValues values;
    for (const auto& entry : kTable) {
        if (entry.registered) values.emplace(entry.key, defaultText(entry));
    }
    return values;
}

std::string typeText(const PreferenceEntry& entry) {
    switch (entry.type) {
        case PreferenceType::Boolean:
            return "yes or no (1 or 0)";
        case PreferenceType::Integer:
            return "integer, " + rangeText(entry.range);
        case PreferenceType::Number:
            return "number, " + rangeText(entry.range);
        case PreferenceType::TextList:
            return "list of texts";
        case PreferenceType::DataList:
            return "list of data";
    }
    return {};
}

std::optional<std::string> storedText(const PreferenceEntry& entry, std::string_view typed) {
    const auto text = Fennimar::trimmedOfWhitespaceAndNewlines(typed);
    switch (entry.type) {
        case PreferenceType::Boolean:
            return storedBoolean(text);
        case PreferenceType::Integer:
            return storedInteger(entry, text);
        case PreferenceType::Number:
            return storedNumber(entry, text);
        case PreferenceType::TextList:
        case PreferenceType::DataList:
            if (text.empty() || text == kEmptyList) return std::string(kEmptyList);
            return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace reelvane
