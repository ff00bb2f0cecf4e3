#include "app/settings_reader.h"

#include <algorithm>
#include <utility>

#include "app/preference_table.h"
#include "conversion/conversion_settings.h"
#include "support/make_string.h"
#include "support/ports/folder_access.h"
#include "support/ports/main_bundle.h"
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

namespace {

constexpr int kUsagesBeforeSpeedHint = 4;

void resetIfExcluded(Preferences& preferences, std::string_view key) {
    const auto& entry = *findPreference(key);
    if (preferences.defaultInt(key) == entry.excluded) {
        preferences.setDefaultInt(key, defaultInteger(entry));
    }
}

void resetIfOutside(Preferences& preferences, std::string_view key) {
    const auto& entry = *findPreference(key);
    const auto value = preferences.defaultInt(key);
    if (value < entry.minimum || value > entry.maximum) {
        preferences.setDefaultInt(key, defaultInteger(entry));
    }
}

}  // namespace

std::string versionUsagesKey(std::string_view version) {
    return makeString("vantor_%@_usages", version);
}

void correctMenuValues(Preferences& preferences) {
    resetIfExcluded(preferences, kExternalSubtitleEncodingKey);
    resetIfOutside(preferences, kCustomUnknownHandlingKey);
}

bool speedHintIsDue(const Preferences& preferences, std::string_view version) {
    return preferences.defaultInt(kWelcomeShownKey) == 0 &&
           preferences.defaultInt(versionUsagesKey(version)) >= kUsagesBeforeSpeedHint &&
           conversionPresetOf(preferences.defaultInt(kConversionPresetKey)) ==
               ConversionPreset::Compatible;
}

void upgradeDestinationIndex(Preferences& preferences) {
    if (preferences.defaultInt(kHasUpgradedFromPre13Key) != 0) return;
    // The caller's choice for this run is numbered for the present menu, and hides the stored
    // value; the next run without such a choice does the step.
    if (preferences.isSetForThisRun(kDefaultDestinationKey)) return;
    // The former menu had a separator in second place: a 1 was written for the present one.
    if (const auto destination = preferences.defaultInt(kDefaultDestinationKey); destination > 1) {
        preferences.setDefaultInt(kDefaultDestinationKey, destination + 1);
    }
    preferences.setDefaultInt(kHasUpgradedFromPre13Key, 1);
}

void clampDefaultDestination(Preferences& preferences, std::size_t folders) {
    const auto count = static_cast<int>(folders);
    if (preferences.defaultInt(kDefaultDestinationKey) > count + 2) {
        preferences.setDefaultInt(kDefaultDestinationKey, count + 1);
    }
    resetIfExcluded(preferences, kDefaultDestinationKey);
}

ProbeTools probeTools(ProcessLauncher& launcher, const MainBundle& mainBundle,
                      FolderAccess& folderAccess, std::string appName,
                      const Translations& translations) {
    const auto granted = folderAccess.grantedFolders();
    const bool unlimited = std::ranges::find(granted, std::filesystem::path("/")) != granted.end();
    return {.launcher = &launcher,
            .ffmpeg = mainBundle.pathForResource("ffmpeg"),
            .appName = std::move(appName),
            .sandboxed = !unlimited,
            .translations = &translations};
}

}  // namespace reelvane
