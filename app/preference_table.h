#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "conversion/conversion_settings.h"
#include "media/probe_report.h"
#include "support/ports/preferences_store.h"
#include "support/preferences.h"

namespace reelvane {

/// The range of an integer has no upper end.
inline constexpr int kNoMaximum = std::numeric_limits<int>::max();

/// The numbers that a person may choose.
struct PreferenceRange {
    int minimum = 0;
    int maximum = 0;                ///< kNoMaximum: none
    std::optional<int> excluded{};  ///< a value inside the range that is never valid
};

/// One preference: everything that reading, checking, listing and documenting it needs. T is bool,
/// int or float. Every preference is a constant below.
template <typename T>
struct Preference {
    std::string_view key{};
    T defaultValue{};
    PreferenceRange range{};       ///< of a number
    std::optional<T> otherwise{};  ///< what a misfit counts as; absent: the default
    bool registered = true;        ///< false: not among the registered defaults, reads as 0
    std::string_view meaning{};    ///< one plain sentence with the meaning of each value
};

/// A list of texts or of data, empty by default. The program itself keeps it.
struct ListPreference {
    std::string_view key{};
    bool ofData = false;
    bool registered = true;  ///< false: not among the registered defaults
    std::string_view meaning{};
};

/// What is stored, or the default. A number is not made to fit its range.
template <typename T>
[[nodiscard]] T get(const Preferences& preferences, const Preference<T>& preference) {
    if constexpr (std::is_same_v<T, bool>) {
        return preferences.defaultInt(preference.key) != 0;
    } else if constexpr (std::is_same_v<T, int>) {
        return preferences.defaultInt(preference.key);
    } else {
        return preferences.defaultFloat(preference.key);
    }
}
[[nodiscard]] std::vector<std::string> get(const Preferences& preferences,
                                           const ListPreference& preference);

template <typename T>
void set(Preferences& preferences, const Preference<T>& preference, std::type_identity_t<T> value) {
    if constexpr (std::is_same_v<T, float>) {
        preferences.setDefaultFloat(preference.key, value);
    } else {
        preferences.setDefaultInt(preference.key, static_cast<int>(value));
    }
}

enum class PreferenceType { Boolean, Integer, Number, TextList, DataList };

/// One row of the table: a preference of whatever type.
struct PreferenceEntry {
    std::string_view key{};
    PreferenceType type = PreferenceType::Integer;
    double defaultNumber = 0;  ///< of a list: 0
    PreferenceRange range{};
    std::optional<int> otherwise{};
    bool registered = true;
    std::string_view meaning{};
};

/// Every preference, once, in the order in which it is listed and documented.
[[nodiscard]] std::span<const PreferenceEntry> preferenceTable();
[[nodiscard]] const PreferenceEntry* findPreference(std::string_view key);

/// The layer of registered defaults, made from the table.
[[nodiscard]] PreferenceValues registeredDefaults();

/// The default as the store would hold it.
[[nodiscard]] std::string defaultText(const PreferenceEntry& entry);

/// What the program acts on when this number is stored: the number itself where it fits.
[[nodiscard]] int effectiveInteger(const PreferenceEntry& entry, int stored);

/// "integer, 0 to 3", "yes or no (1 or 0)", "list of texts" and so on.
[[nodiscard]] std::string typeText(const PreferenceEntry& entry);

/// A value as a person typed it, checked against the entry's type and range, as the store holds it;
/// absent when it does not fit. Booleans also take yes, no, true, false, on and off. Lists are kept
/// by the program itself: only the empty text fits, which empties them.
[[nodiscard]] std::optional<std::string> storedText(const PreferenceEntry& entry,
                                                    std::string_view typed);

/// What a conversion depends on has its default where the conversion declares it.
inline constexpr ConversionSettings kDefaultSettings{};

/// Far louder than anything that is of use; keeps a mistyped volume from hurting somebody's ears.
inline constexpr int kLoudestVolume = 1000;

inline constexpr Preference<int> kConversionPreset{
    .key = "ConversionPreset",
    .defaultValue = static_cast<int>(kDefaultSettings.audio.conversionPreset),
    .range = {.maximum = 2},
    .otherwise = 1,
    .meaning =
        "Conversion style: 0 compatible (every audio track that is not AAC becomes AAC), 1 high "
        "speed and quality (copies what it can), 2 custom (as the Custom...Handling keys say)."};
inline constexpr Preference<bool> kIncludeSurroundTrack{
    .key = "IncludeSurroundTrack",
    .defaultValue = kDefaultSettings.includeSurroundTrack,
    .meaning =
        "With the compatible style, 1 adds the surround track of the source as a second audio "
        "track, 0 does not."};
inline constexpr Preference<bool> kIncludeSurroundTrackTranscoded{
    .key = "IncludeSurroundTrackTranscoded",
    .defaultValue = kDefaultSettings.includeSurroundTrackTranscoded,
    .meaning =
        "A second audio track from a DTS source: 1 transcodes it to six-channel AC-3, 0 copies "
        "it."};
inline constexpr Preference<bool> kWelcomeShown{
    .key = "WelcomeShown",
    .defaultValue = true,
    .meaning = "Whether the hint on the faster conversion style has been shown: 1 yes, 0 not yet."};
inline constexpr Preference<int> kDefaultExtension{
    .key = "DefaultExtension",
    .defaultValue = 1,
    .range = {.maximum = 1},
    .otherwise = 1,
    .meaning = "File-name extension of the output: 0 mp4, 1 m4v."};
inline constexpr Preference<int> kAACBitrate{
    .key = "AACBitrate",
    .defaultValue = kDefaultSettings.aacBitrate,
    .range = {.maximum = 3},
    .meaning = "Bit rate of AAC audio: 0 96k, 1 128k, 2 160k, 3 192k."};
inline constexpr Preference<int> kAC3StereoBitrate{
    .key = "AC3StereoBitrate",
    .defaultValue = kDefaultSettings.ac3StereoBitrate,
    .range = {.maximum = 3},
    .meaning = "Bit rate of two-channel AC-3 audio: 0 160k, 1 192k, 2 224k, 3 256k."};
inline constexpr Preference<int> kAC3SurroundBitrate{
    .key = "AC3SurroundBitrate",
    .defaultValue = kDefaultSettings.ac3SurroundBitrate,
    .range = {.maximum = 3},
    .meaning = "Bit rate of six-channel AC-3 audio: 0 384k, 1 448k, 2 512k, 3 576k."};
inline constexpr Preference<float> kAudioVolume{
    .key = "AudioVolume",
    .defaultValue = kDefaultSettings.audioVolume,
    .range = {.maximum = kLoudestVolume},
    .meaning =
        "Volume of the output audio in per cent: 99 to 101 leaves it unchanged, less is quieter, "
        "more is louder."};
inline constexpr Preference<bool> kAutoAdd{
    .key = "AutoAdd",
    .defaultValue = false,
    .meaning = "1 queues each file at once with the current settings, 0 waits for the add button."};
inline constexpr Preference<bool> kAutoClean{
    .key = "AutoClean",
    .defaultValue = kDefaultSettings.autoClean,
    .meaning = "1 takes finished jobs off the list by themselves, 0 leaves them there."};
inline constexpr Preference<bool> kAutoRemove{
    .key = "AutoRemove",
    .defaultValue = kDefaultSettings.autoRemove,
    .meaning = "1 removes the source file after a successful conversion, 0 keeps it."};
inline constexpr Preference<int> kAutoRemoveType{
    .key = "AutoRemoveType",
    .defaultValue = kDefaultSettings.autoRemoveType,
    .range = {.maximum = 1},
    .otherwise = 1,
    .meaning = "How a source file is removed: 0 moves it to the Trash, 1 deletes it at once."};
inline constexpr Preference<int> kConversions{
    .key = "Conversions",
    .defaultValue = 0,
    .range = {.maximum = kNoMaximum},
    .meaning = "Kept for older versions; any count, nothing uses it."};
inline constexpr Preference<bool> kHasUpgradedFromPre13{
    .key = "HasUpgradedFromPre13",
    .defaultValue = false,
    .meaning =
        "Whether the saved destination has been renumbered once for the present menu: 1 yes, 0 not "
        "yet."};
inline constexpr Preference<int> kExternalSubtitleEncoding{
    .key = "ExternalSubtitleEncoding",
    .defaultValue = kDefaultSettings.externalSubtitleEncoding,
    .range = {.maximum = 38, .excluded = 1},
    .meaning =
        "Character encoding of external subtitle files: 0 none (found in each file), 2 UTF-8, 3 "
        "UTF-16, 4 CP874, 5 CP936, 6 to 14 CP1250 to CP1258, 15 to 22 LATIN1 to LATIN8, 23 to 38 "
        "ISO-8859-1 to ISO-8859-16 (34, which never came into use, is as 0)."};
inline constexpr Preference<int> kDefaultAudio{
    .key = "DefaultAudio",
    .defaultValue = 0,
    .range = {.maximum = 8, .excluded = 1},
    .meaning =
        "Language of the audio track that is chosen first: 0 your own languages, 2 English, 3 "
        "German, 4 French, 5 Spanish, 6 Chinese, 7 Japanese, 8 Russian."};
inline constexpr Preference<int> kDefaultDestination{
    .key = "DefaultDestination",
    .defaultValue = 0,
    .range = {.maximum = kNoMaximum, .excluded = 2},
    .meaning =
        "Where converted files go: 0 asks for each file, 1 next to the source file, 3 the first "
        "saved folder, 4 the second, and so on as far as folders are saved."};
inline constexpr Preference<bool> kFixSubtitleDuration{
    .key = "FixSubtitleDuration",
    .defaultValue = kDefaultSettings.fixSubtitleDuration,
    .meaning = "1 lets ffmpeg repair the durations of subtitles, 0 takes them as they are."};
inline constexpr ListPreference kDestinationBookmarks{
    .key = "DestinationBookmarks",
    .ofData = true,
    .meaning =
        "The saved destination folders, in the order of the menu; kept by the program itself."};
inline constexpr ListPreference kDestinationNames{
    .key = "DestinationNames",
    .meaning =
        "The names of the saved destination folders, in the same order; kept by the program "
        "itself."};
inline constexpr Preference<bool> kDisableBuiltinSubtitles{
    .key = "DisableBuiltinSubtitles",
    .defaultValue = kDefaultSettings.disableBuiltinSubtitles,
    .meaning = "1 leaves subtitles inside the source out of the output, 0 carries them over."};
inline constexpr Preference<bool> kQuitAfterConversion{
    .key = "QuitAfterConversion",
    .defaultValue = kDefaultSettings.quitAfterConversion,
    .meaning =
        "1 quits when the queue has run empty, no job failed or ended with a warning and no "
        "refused file is listed, 0 stays open."};
inline constexpr Preference<bool> kDTSDownmix{
    .key = "DTSDownmix",
    .defaultValue = kDefaultSettings.audio.dtsDownmix,
    .meaning =
        "With the high speed style, surround DTS audio: 1 mixes it down to stereo, 0 transcodes it "
        "to six-channel AC-3."};
inline constexpr Preference<bool> kAC3Downmix{
    .key = "AC3Downmix",
    .defaultValue = kDefaultSettings.audio.ac3Downmix,
    .meaning =
        "With the high speed style, surround AC-3 audio: 1 mixes it down to stereo, 0 copies it."};
inline constexpr Preference<int> kCustomAC3Handling{
    .key = "CustomAC3Handling",
    .defaultValue = kDefaultSettings.audio.customAC3Handling,
    .range = {.maximum = 3},
    .meaning =
        "With the custom style, two-channel AC-3: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 "
        "copy."};
inline constexpr Preference<int> kCustomAC351Handling{
    .key = "CustomAC351Handling",
    .defaultValue = kDefaultSettings.audio.customAC351Handling,
    .range = {.maximum = 3},
    .meaning =
        "With the custom style, surround AC-3: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 copy."};
inline constexpr Preference<int> kCustomDTSHandling{
    .key = "CustomDTSHandling",
    .defaultValue = kDefaultSettings.audio.customDTSHandling,
    .range = {.maximum = 3},
    .meaning =
        "With the custom style, two-channel DTS: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 copy."};
inline constexpr Preference<int> kCustomDTS51Handling{
    .key = "CustomDTS51Handling",
    .defaultValue = kDefaultSettings.audio.customDTS51Handling,
    .range = {.maximum = 3},
    .meaning =
        "With the custom style, surround DTS: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 copy."};
inline constexpr Preference<int> kCustomVorbisHandling{
    .key = "CustomVorbisHandling",
    .defaultValue = kDefaultSettings.audio.customVorbisHandling,
    .range = {.maximum = 3},
    .meaning = "With the custom style, Vorbis: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 copy."};
inline constexpr Preference<int> kCustomMP3Handling{
    .key = "CustomMP3Handling",
    .defaultValue = kDefaultSettings.audio.customMP3Handling,
    .range = {.maximum = 3},
    .meaning = "With the custom style, MP3: 0 AAC stereo, 1 AC-3 stereo, 2 AC-3 5.1, 3 copy."};
inline constexpr Preference<int> kCustomUnknownHandling{
    .key = "CustomUnknownHandling",
    .defaultValue = kDefaultSettings.audio.customUnknownHandling,
    .range = {.maximum = 1},
    .meaning = "With the custom style, any other audio: 0 AAC stereo, 1 AC-3 stereo."};
inline constexpr Preference<bool> kInsertJobsAtBottom{
    .key = "InsertJobsAtBottom",
    .defaultValue = false,
    .registered = false,
    .meaning = "1 puts new jobs at the end of the list, 0 at the top, where they run first."};
inline constexpr Preference<bool> kProduceStreamableFiles{
    .key = "ProduceStreamableFiles",
    .defaultValue = kDefaultSettings.produceStreamableFiles,
    .registered = false,
    .meaning = "1 writes files that play while they are still being downloaded, 0 does not."};
inline constexpr Preference<bool> kHEAACConvert{
    .key = "HEAACConvert",
    .defaultValue = ProbeOptions{}.heAACConvert,
    .registered = false,
    .meaning = "1 treats HE-AAC audio as a codec of its own and converts it, 0 as AAC."};
inline constexpr Preference<int> kConvertedFileCount{
    .key = "convertedFileCount",
    .defaultValue = 0,
    .range = {.maximum = kNoMaximum},
    .registered = false,
    .meaning = "How many conversion runs have ended, failed ones included; any count."};
inline constexpr ListPreference kUnfinishedOutput{
    .key = "UnfinishedOutput",
    .registered = false,
    .meaning =
        "The outputs that are being written; the next start deletes those that a crash left "
        "unfinished; kept by the program itself."};

}  // namespace reelvane
