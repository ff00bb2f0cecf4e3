#include "app/preference_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

/// Far louder than anything that is of use; keeps a mistyped volume from hurting somebody's ears.
constexpr int kLoudestVolume = 1000;

constexpr std::string_view kEmptyList = "()";  // see support/preference_text.h

constexpr PreferenceEntry boolean(std::string_view key, std::string_view defaultText,
                                  std::string_view meaning) {
    return {.key = key,
            .type = PreferenceType::Boolean,
            .defaultText = defaultText,
            .maximum = 1,
            .otherwise = 1,
            .meaning = meaning};
}

constexpr PreferenceEntry integer(std::string_view key, std::string_view defaultText, int maximum,
                                  std::string_view meaning,
                                  std::optional<int> excluded = std::nullopt) {
    return {.key = key,
            .type = PreferenceType::Integer,
            .defaultText = defaultText,
            .maximum = maximum,
            .excluded = excluded,
            .meaning = meaning};
}

constexpr PreferenceEntry number(std::string_view key, std::string_view defaultText, int maximum,
                                 std::string_view meaning) {
    return {.key = key,
            .type = PreferenceType::Number,
            .defaultText = defaultText,
            .maximum = maximum,
            .meaning = meaning};
}

constexpr PreferenceEntry list(std::string_view key, PreferenceType type,
                               std::string_view meaning) {
    return {.key = key, .type = type, .defaultText = kEmptyList, .meaning = meaning};
}

constexpr PreferenceEntry otherwise(int value, PreferenceEntry entry) {
    entry.otherwise = value;
    return entry;
}

constexpr PreferenceEntry unregistered(PreferenceEntry entry) {
    entry.registered = false;
    return entry;
}

constexpr auto kTable = std::to_array<PreferenceEntry>({
    otherwise(1,
              integer(kConversionPresetKey, "0", 2,
                      "Conversion style: 0 compatible (every audio track that is not AAC becomes "
                      "AAC), 1 high speed and quality (copies what it can), 2 custom (as the "
                      "Custom...Handling keys say).")),
    boolean(kIncludeSurroundTrackKey, "1",
            "With the compatible style, 1 adds the surround track of the source as a second audio "
            "track, 0 does not."),
    boolean(kIncludeSurroundTrackTranscodedKey, "1",
            "A second audio track from a DTS source: 1 transcodes it to six-channel AC-3, 0 copies "
            "it."),
    boolean(kWelcomeShownKey, "1",
            "Whether the hint on the faster conversion style has been shown: 1 yes, 0 not yet."),
    otherwise(1, integer(kDefaultExtensionKey, "1", 1,
                         "File-name extension of the output: 0 mp4, 1 m4v.")),
    integer(kAACBitrateKey, "1", 3, "Bit rate of AAC audio: 0 96k, 1 128k, 2 160k, 3 192k."),
    integer(kAC3StereoBitrateKey, "1", 3,
            "Bit rate of two-channel AC-3 audio: 0 160k, 1 192k, 2 224k, 3 256k."),
    integer(kAC3SurroundBitrateKey, "1", 3,
            "Bit rate of six-channel AC-3 audio: 0 384k, 1 448k, 2 512k, 3 576k."),
    number(
        kAudioVolumeKey, "100", kLoudestVolume,
        "Volume of the output audio in per cent: 99 to 101 leaves it unchanged, less is quieter, "
        "more is louder."),
    boolean(kAutoAddKey, "0",
            "1 queues each file at once with the current settings, 0 waits for the add button."),
    boolean(kAutoCleanKey, "0",
            "1 takes finished jobs off the list by themselves, 0 leaves them there."),
    boolean(kAutoRemoveKey, "0",
            "1 removes the source file after a successful conversion, 0 keeps it."),
    otherwise(
        1, integer(kAutoRemoveTypeKey, "0", 1,
                   "How a source file is removed: 0 moves it to the Trash, 1 deletes it at once.")),
    integer(kConversionsKey, "0", kNoMaximum,
            "Kept for older versions; any count, nothing uses it."),
    boolean(kHasUpgradedFromPre13Key, "0",
            "Whether the saved destination has been renumbered once for the present menu: 1 yes, 0 "
            "not yet."),
    integer(kExternalSubtitleEncodingKey, "0", 38,
            "Character encoding of external subtitle files: 0 none (found in each file), 2 UTF-8, "
            "3 UTF-16, 4 CP874, 5 CP936, 6 to 14 CP1250 to CP1258, 15 to 22 LATIN1 to LATIN8, 23 "
            "to 38 ISO-8859-1 to ISO-8859-16 (34, which never came into use, is as 0).",
            1),
    integer(kDefaultAudioKey, "0", 8,
            "Language of the audio track that is chosen first: 0 your own languages, 2 English, 3 "
            "German, 4 French, 5 Spanish, 6 Chinese, 7 Japanese, 8 Russian.",
            1),
    integer(
        kDefaultDestinationKey, "0", kNoMaximum,
        "Where converted files go: 0 asks for each file, 1 next to the source file, 3 the first "
        "saved folder, 4 the second, and so on as far as folders are saved.",
        2),
    boolean(kFixSubtitleDurationKey, "1",
            "1 lets ffmpeg repair the durations of subtitles, 0 takes them as they are."),
    list(kDestinationBookmarksKey, PreferenceType::DataList,
         "The saved destination folders, in the order of the menu; kept by the program itself."),
    list(kDestinationNamesKey, PreferenceType::TextList,
         "The names of the saved destination folders, in the same order; kept by the program "
         "itself."),
    boolean(kDisableBuiltinSubtitlesKey, "1",
            "1 leaves subtitles inside the source out of the output, 0 carries them over."),
    boolean(kQuitAfterConversionKey, "0",
            "1 quits when the queue has run empty, no job failed or ended with a warning and no "
            "refused file is listed, 0 stays open."),
    boolean(
        kDTSDownmixKey, "0",
        "With the high speed style, surround DTS audio: 1 mixes it down to stereo, 0 transcodes "
        "it to six-channel AC-3."),
    boolean(kAC3DownmixKey, "0",
            "With the high speed style, surround AC-3 audio: 1 mixes it down to stereo, 0 copies "
            "it."),
    integer(kCustomAC3HandlingKey, "3", 3,
            "With the custom style, two-channel AC-3: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 "
            "copy."),
    integer(kCustomAC351HandlingKey, "3", 3,
            "With the custom style, surround AC-3: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 "
            "copy."),
    integer(kCustomDTSHandlingKey, "1", 3,
            "With the custom style, two-channel DTS: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 "
            "copy."),
    integer(
        kCustomDTS51HandlingKey, "2", 3,
        "With the custom style, surround DTS: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 copy."),
    integer(kCustomVorbisHandlingKey, "1", 3,
            "With the custom style, Vorbis: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 copy."),
    integer(kCustomMP3HandlingKey, "1", 3,
            "With the custom style, MP3: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 copy."),
    integer(kCustomUnknownHandlingKey, "1", 1,
            "With the custom style, any other audio: 0 AAC stereo, 1 AC-3 stereo."),
    unregistered(boolean(kInsertJobsAtBottomKey, "0",
                         "1 puts new jobs at the end of the list, 0 at the top, where they run "
                         "first.")),
    unregistered(boolean(kProduceStreamableFilesKey, "0",
                         "1 writes files that play while they are still being downloaded, 0 does "
                         "not.")),
    unregistered(boolean(kHEAACConvertKey, "0",
                         "1 treats HE-AAC audio as a codec of its own and converts it, 0 as AAC.")),
    unregistered(integer(kConvertedFileCountKey, "0", kNoMaximum,
                         "How many conversion runs have ended, failed ones included; any count.")),
    unregistered(list(kUnfinishedOutputKey, PreferenceType::TextList,
                      "The outputs that are being written; the next start deletes those that a "
                      "crash left unfinished; kept by the program itself.")),
});

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
    if (!value || *value < entry.minimum || *value > entry.maximum || value == entry.excluded) {
        return std::nullopt;
    }
    return std::to_string(*value);
}

std::optional<std::string> storedNumber(const PreferenceEntry& entry, std::string_view typed) {
    const auto value = wholeNumber<float>(typed);
    // The comparison is false for what is no number, which so does not fit either.
    if (!value || !(*value >= float(entry.minimum) && *value <= float(entry.maximum))) {
        return std::nullopt;
    }
    std::array<char, 32> text{};
    const auto plain = *value == 0 ? 0.0F : *value;  // no negative zero
    const auto written = std::to_chars(text.data(), text.data() + text.size(), plain);
    return std::string(text.data(), written.ptr);
}

std::string rangeText(const PreferenceEntry& entry) {
    auto text = entry.maximum == kNoMaximum ? makeString("%i or more", entry.minimum)
                                            : makeString("%i to %i", entry.minimum, entry.maximum);
    if (entry.excluded) text += makeString(" but not %i", *entry.excluded);
    return text;
}

}  // namespace

std::span<const PreferenceEntry> preferenceTable() {
    return kTable;
}

const PreferenceEntry* findPreference(std::string_view key) {
    const auto* const found = std::ranges::find(kTable, key, &PreferenceEntry::key);
    return found == kTable.end() ? nullptr : found;
}

int defaultInteger(const PreferenceEntry& entry) {
    return Fennimar::leadingInteger(entry.defaultText);
}

int effectiveInteger(const PreferenceEntry& entry, int stored) {
    const bool fits =
        stored >= entry.minimum && stored <= entry.maximum && stored != entry.excluded;
    return fits ? stored : entry.otherwise.value_or(defaultInteger(entry));
}

PreferenceValues registeredDefaults() {
    PreferenceValues values;
    for (const auto& entry : kTable) {
        if (entry.registered) values.emplace(entry.key, entry.defaultText);
    }
    return values;
}

std::string typeText(const PreferenceEntry& entry) {
    switch (entry.type) {
        case PreferenceType::Boolean:
            return "yes or no (1 or 0)";
        case PreferenceType::Integer:
            return "integer, " + rangeText(entry);
        case PreferenceType::Number:
            return "number, " + rangeText(entry);
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
