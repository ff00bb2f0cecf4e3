#include "app/settings_reader.h"

#include "app/preference_keys.h"
#include "support/preferences.h"

namespace reelvane {
namespace {

bool isSet(const Preferences& preferences, std::string_view key) {
    return preferences.defaultInt(key) != 0;
}

AudioSettings readAudioSettings(const Preferences& preferences) {
    return {.conversionPreset = conversionPresetOf(preferences.defaultInt(kConversionPresetKey)),
            .ac3Downmix = isSet(preferences, kAC3DownmixKey),
            .dtsDownmix = isSet(preferences, kDTSDownmixKey),
            .customAC3Handling = preferences.defaultInt(kCustomAC3HandlingKey),
            .customAC351Handling = preferences.defaultInt(kCustomAC351HandlingKey),
            .customDTSHandling = preferences.defaultInt(kCustomDTSHandlingKey),
            .customDTS51Handling = preferences.defaultInt(kCustomDTS51HandlingKey),
            .customMP3Handling = preferences.defaultInt(kCustomMP3HandlingKey),
            .customVorbisHandling = preferences.defaultInt(kCustomVorbisHandlingKey),
            .customUnknownHandling = preferences.defaultInt(kCustomUnknownHandlingKey)};
}

}  // namespace

ConversionSettings readConversionSettings(const Preferences& preferences) {
    return {
        .audio = readAudioSettings(preferences),
        .aacBitrate = preferences.defaultInt(kAACBitrateKey),
        .ac3StereoBitrate = preferences.defaultInt(kAC3StereoBitrateKey),
        .ac3SurroundBitrate = preferences.defaultInt(kAC3SurroundBitrateKey),
        .audioVolume = preferences.defaultFloat(kAudioVolumeKey),
        .includeSurroundTrack = isSet(preferences, kIncludeSurroundTrackKey),
        .includeSurroundTrackTranscoded = isSet(preferences, kIncludeSurroundTrackTranscodedKey),
        .disableBuiltinSubtitles = isSet(preferences, kDisableBuiltinSubtitlesKey),
        .externalSubtitleEncoding = preferences.defaultInt(kExternalSubtitleEncodingKey),
        .produceStreamableFiles = isSet(preferences, kProduceStreamableFilesKey),
        .fixSubtitleDuration = isSet(preferences, kFixSubtitleDurationKey),
        .autoClean = isSet(preferences, kAutoCleanKey),
        .autoRemove = isSet(preferences, kAutoRemoveKey),
        .autoRemoveType = preferences.defaultInt(kAutoRemoveTypeKey),
        .quitAfterConversion = isSet(preferences, kQuitAfterConversionKey)};
}

ProbeOptions readProbeOptions(const Preferences& preferences) {
    return {.heAACConvert = isSet(preferences, kHEAACConvertKey)};
}

std::string_view outputExtension(const Preferences& preferences) {
    return preferences.defaultInt(kDefaultExtensionKey) == 0 ? "mp4" : "m4v";
}

}  // namespace reelvane
