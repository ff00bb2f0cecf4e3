#pragma once

#include <string_view>

namespace reelvane {

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
