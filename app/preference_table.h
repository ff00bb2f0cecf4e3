#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "support/ports/preferences_store.h"

namespace reelvane {

enum class PreferenceType { Boolean, Integer, Number, TextList, DataList };

/// The range of an integer has no upper end.
inline constexpr int kNoMaximum = std::numeric_limits<int>::max();

/// One preference: everything that reading, checking, listing and documenting it needs.
struct PreferenceEntry {
    std::string_view key{};
    PreferenceType type = PreferenceType::Integer;
    std::string_view defaultText{};  ///< as the store would hold it
    bool registered = true;          ///< false: not among the registered defaults, reads as 0
    int minimum = 0;                 ///< of an integer or a number
    int maximum = 0;                 ///< of an integer or a number; kNoMaximum: none
    std::optional<int> excluded{};   ///< a value inside the range that is never valid
    std::optional<int> otherwise{};  ///< what a misfit counts as; absent: the default
    std::string_view meaning{};      ///< one plain sentence with the meaning of each value
};

/// The integer that the entry reads as while nothing is stored.
[[nodiscard]] int defaultInteger(const PreferenceEntry& entry);

/// What the program acts on when this number is stored: the number itself where it fits.
[[nodiscard]] int effectiveInteger(const PreferenceEntry& entry, int stored);

/// Every preference, once, in the order in which it is listed and documented.
[[nodiscard]] std::span<const PreferenceEntry> preferenceTable();
[[nodiscard]] const PreferenceEntry* findPreference(std::string_view key);

/// The layer of registered defaults, made from the table.
[[nodiscard]] PreferenceValues registeredDefaults();

/// "integer, 0 to 3", "yes or no (1 or 0)", "list of texts" and so on.
[[nodiscard]] std::string typeText(const PreferenceEntry& entry);

/// A value as a person typed it, checked against the entry's type and range, as the store holds it;
/// absent when it does not fit. Booleans also take yes, no, true, false, on and off. Lists are kept
/// by the program itself: only the empty text fits, which empties them.
[[nodiscard]] std::optional<std::string> storedText(const PreferenceEntry& entry,
                                                    std::string_view typed);

inline constexpr std::string_view kAACBitrateKey = "AACBitrate";
inline constexpr std::string_view kAC3DownmixKey = "AC3Downmix";
inline constexpr std::string_view kAC3StereoBitrateKey = "AC3StereoBitrate";
inline constexpr std::string_view kAC3SurroundBitrateKey = "AC3SurroundBitrate";
inline constexpr std::string_view kAudioVolumeKey = "AudioVolume";
inline constexpr std::string_view kAutoAddKey = "AutoAdd";
inline constexpr std::string_view kAutoCleanKey = "AutoClean";
inline constexpr std::string_view kAutoRemoveKey = "AutoRemove";
inline constexpr std::string_view kAutoRemoveTypeKey = "AutoRemoveType";
inline constexpr std::string_view kConversionPresetKey = "ConversionPreset";
inline constexpr std::string_view kConversionsKey = "Conversions";
inline constexpr std::string_view kConvertedFileCountKey = "convertedFileCount";
inline constexpr std::string_view kCustomAC351HandlingKey = "CustomAC351Handling";
inline constexpr std::string_view kCustomAC3HandlingKey = "CustomAC3Handling";
inline constexpr std::string_view kCustomDTS51HandlingKey = "CustomDTS51Handling";
inline constexpr std::string_view kCustomDTSHandlingKey = "CustomDTSHandling";
inline constexpr std::string_view kCustomMP3HandlingKey = "CustomMP3Handling";
inline constexpr std::string_view kCustomUnknownHandlingKey = "CustomUnknownHandling";
inline constexpr std::string_view kCustomVorbisHandlingKey = "CustomVorbisHandling";
inline constexpr std::string_view kDTSDownmixKey = "DTSDownmix";
inline constexpr std::string_view kDefaultAudioKey = "DefaultAudio";
inline constexpr std::string_view kDefaultDestinationKey = "DefaultDestination";
inline constexpr std::string_view kDefaultExtensionKey = "DefaultExtension";
inline constexpr std::string_view kDestinationBookmarksKey = "DestinationBookmarks";
inline constexpr std::string_view kDestinationNamesKey = "DestinationNames";
inline constexpr std::string_view kDisableBuiltinSubtitlesKey = "DisableBuiltinSubtitles";
inline constexpr std::string_view kExternalSubtitleEncodingKey = "ExternalSubtitleEncoding";
inline constexpr std::string_view kFixSubtitleDurationKey = "FixSubtitleDuration";
inline constexpr std::string_view kHEAACConvertKey = "HEAACConvert";
inline constexpr std::string_view kHasUpgradedFromPre13Key = "HasUpgradedFromPre13";
inline constexpr std::string_view kIncludeSurroundTrackKey = "IncludeSurroundTrack";
inline constexpr std::string_view kIncludeSurroundTrackTranscodedKey =
    "IncludeSurroundTrackTranscoded";
inline constexpr std::string_view kInsertJobsAtBottomKey = "InsertJobsAtBottom";
inline constexpr std::string_view kProduceStreamableFilesKey = "ProduceStreamableFiles";
inline constexpr std::string_view kQuitAfterConversionKey = "QuitAfterConversion";
inline constexpr std::string_view kUnfinishedOutputKey = "UnfinishedOutput";
inline constexpr std::string_view kWelcomeShownKey = "WelcomeShown";

}  // namespace reelvane
