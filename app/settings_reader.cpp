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

AudioSettings readAudioSettings(const Preferences& preferences) {
    return {.conversionPreset = conversionPresetOf(get(preferences, kConversionPreset)),
            .ac3Downmix = get(preferences, kAC3Downmix),
            .dtsDownmix = get(preferences, kDTSDownmix),
            .customAC3Handling = get(preferences, kCustomAC3Handling),
            .customAC351Handling = get(preferences, kCustomAC351Handling),
            .customDTSHandling = get(preferences, kCustomDTSHandling),
            .customDTS51Handling = get(preferences, kCustomDTS51Handling),
            .customMP3Handling = get(preferences, kCustomMP3Handling),
            .customVorbisHandling = get(preferences, kCustomVorbisHandling),
            .customUnknownHandling = get(preferences, kCustomUnknownHandling)};
}

constexpr int kUsagesBeforeSpeedHint = 4;

void resetIfExcluded(Preferences& preferences, const Preference<int>& preference) {
    if (get(preferences, preference) == preference.range.excluded) {
        set(preferences, preference, preference.defaultValue);
    }
}

void resetIfOutside(Preferences& preferences, const Preference<int>& preference) {
    const auto value = get(preferences, preference);
    if (value < preference.range.minimum || value > preference.range.maximum) {
        set(preferences, preference, preference.defaultValue);
    }
}

}  // namespace

ConversionSettings readConversionSettings(const Preferences& preferences) {
    return {.audio = readAudioSettings(preferences),
            .aacBitrate = get(preferences, kAACBitrate),
            .ac3StereoBitrate = get(preferences, kAC3StereoBitrate),
            .ac3SurroundBitrate = get(preferences, kAC3SurroundBitrate),
            .audioVolume = get(preferences, kAudioVolume),
            .includeSurroundTrack = get(preferences, kIncludeSurroundTrack),
            .includeSurroundTrackTranscoded = get(preferences, kIncludeSurroundTrackTranscoded),
            .disableBuiltinSubtitles = get(preferences, kDisableBuiltinSubtitles),
            .externalSubtitleEncoding = get(preferences, kExternalSubtitleEncoding),
            .produceStreamableFiles = get(preferences, kProduceStreamableFiles),
            .fixSubtitleDuration = get(preferences, kFixSubtitleDuration),
            .autoClean = get(preferences, kAutoClean),
            .autoRemove = get(preferences, kAutoRemove),
            .autoRemoveType = get(preferences, kAutoRemoveType),
            .quitAfterConversion = get(preferences, kQuitAfterConversion)};
}

ProbeOptions readProbeOptions(const Preferences& preferences) {
    return {.heAACConvert = get(preferences, kHEAACConvert)};
}

std::string_view outputExtension(const Preferences& preferences) {
    return get(preferences, kDefaultExtension) == 0 ? "mp4" : "m4v";
}

std::string versionUsagesKey(std::string_view version) {
    return makeString("vantor_%@_usages", version);
}

void correctMenuValues(Preferences& preferences) {
    resetIfExcluded(preferences, kExternalSubtitleEncoding);
    resetIfOutside(preferences, kCustomUnknownHandling);
}

bool speedHintIsDue(const Preferences& preferences, std::string_view version) {
    return !get(preferences, kWelcomeShown) &&
           preferences.defaultInt(versionUsagesKey(version)) >= kUsagesBeforeSpeedHint &&
           conversionPresetOf(get(preferences, kConversionPreset)) == ConversionPreset::Compatible;
}

void upgradeDestinationIndex(Preferences& preferences) {
    if (get(preferences, kHasUpgradedFromPre13)) return;
    // The caller's choice for this run is numbered for the present menu, and hides the stored
    // value; the next run without such a choice does the step.
    if (preferences.isSetForThisRun(kDefaultDestination.key)) return;
    // The former menu had a separator in second place: a 1 was written for the present one.
    if (const auto destination = get(preferences, kDefaultDestination); destination > 1) {
        set(preferences, kDefaultDestination, destination + 1);
    }
    set(preferences, kHasUpgradedFromPre13, true);
}

void clampDefaultDestination(Preferences& preferences, std::size_t folders) {
    const auto count = static_cast<int>(folders);
    if (get(preferences, kDefaultDestination) > count + 2) {
        set(preferences, kDefaultDestination, count + 1);
    }
    resetIfExcluded(preferences, kDefaultDestination);
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
