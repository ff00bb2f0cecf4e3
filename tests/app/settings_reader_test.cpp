#include "app/settings_reader.h"

#include <gtest/gtest.h>

#include "app/preference_table.h"
#include "support/make_string.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

std::vector<std::string_view> listOf(auto... keys) {
    return {keys...};
}

TEST(SettingsReader, EachKeyReachesItsOwnSettingAndNoOther) {
    FakePlatform platform;
    auto& preferences = platform.preferences;
    const auto values = [&preferences] {
        const auto s = readConversionSettings(preferences);
        const auto& a = s.audio;
        return makeString(
            "%i%i%i%i%i%i%i%i%i%i%i%i%i%.0f%i%i%i%i%i%i%i%i%i%i%i",
            static_cast<int>(a.conversionPreset), a.ac3Downmix, a.dtsDownmix, a.customAC3Handling,
            a.customAC351Handling, a.customDTSHandling, a.customDTS51Handling, a.customMP3Handling,
            a.customVorbisHandling, a.customUnknownHandling, s.aacBitrate, s.ac3StereoBitrate,
            s.ac3SurroundBitrate, s.audioVolume, s.includeSurroundTrack,
            s.includeSurroundTrackTranscoded, s.disableBuiltinSubtitles, s.externalSubtitleEncoding,
            s.produceStreamableFiles, s.fixSubtitleDuration, s.autoClean, s.autoRemove,
            s.autoRemoveType, s.quitAfterConversion, readProbeOptions(preferences).heAACConvert);
    };
    const auto keys =
        listOf(kConversionPreset.key, kAC3Downmix.key, kDTSDownmix.key, kCustomAC3Handling.key,
               kCustomAC351Handling.key, kCustomDTSHandling.key, kCustomDTS51Handling.key,
               kCustomMP3Handling.key, kCustomVorbisHandling.key, kCustomUnknownHandling.key,
               kAACBitrate.key, kAC3StereoBitrate.key, kAC3SurroundBitrate.key, kAudioVolume.key,
               kIncludeSurroundTrack.key, kIncludeSurroundTrackTranscoded.key,
               kDisableBuiltinSubtitles.key, kExternalSubtitleEncoding.key,
               kProduceStreamableFiles.key, kFixSubtitleDuration.key, kAutoClean.key,
               kAutoRemove.key, kAutoRemoveType.key, kQuitAfterConversion.key, kHEAACConvert.key);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        preferences.setDefaultInt(keys[i], 1);
        std::string expected(keys.size(), '0');
        expected[i] = '1';
        EXPECT_EQ(values(), expected) << keys[i];
        preferences.setDefaultObject(keys[i], std::nullopt);
    }
}

class LaunchCorrections : public testing::Test {
protected:
    LaunchCorrections() { preferences_.registerDefaults(registeredDefaults()); }

    FakePlatform platform_;
    Preferences& preferences_ = platform_.preferences;
};

TEST_F(LaunchCorrections, PutMenuValuesRight) {
    const auto corrected = [this](const Preference<int>& preference, int stored) {
        set(preferences_, preference, stored);
        correctMenuValues(preferences_);
        return get(preferences_, preference);
    };
    for (const auto& [stored, after] : {std::pair(1, 0), {2, 2}, {99, 99}})
        EXPECT_EQ(corrected(kExternalSubtitleEncoding, stored), after);
    for (const auto& [stored, after] : {std::pair(3, 1), {-1, 1}, {0, 0}})
        EXPECT_EQ(corrected(kCustomUnknownHandling, stored), after);
}

TEST_F(LaunchCorrections, ClampTheDestinationToTheSavedFolders) {
    const auto clamped = [this](std::size_t folders, int stored) {
        set(preferences_, kDefaultDestination, stored);
        clampDefaultDestination(preferences_, folders);
        return get(preferences_, kDefaultDestination);
    };
    for (const auto& [stored, after] : {std::pair(4, 4), {5, 3}, {6, 3}, {2, 0}, {3, 3}})
        EXPECT_EQ(clamped(2, stored), after);
    EXPECT_EQ(clamped(1, 4), 0);
    for (const auto& [stored, after] : {std::pair(3, 1), {1, 1}, {0, 0}})
        EXPECT_EQ(clamped(0, stored), after);
}

TEST_F(LaunchCorrections, LeaveZeroAndTheChoicesOfThisRunAlone) {
    upgradeDestinationIndex(preferences_);
    EXPECT_EQ(get(preferences_, kDefaultDestination), 0);

    for (const auto& [written, after] : {std::pair(1, 1), {2, 3}, {3, 4}}) {
        set(preferences_, kHasUpgradedFromPre13, false);
        set(preferences_, kDefaultDestination, written);
        upgradeDestinationIndex(preferences_);
        upgradeDestinationIndex(preferences_);
        EXPECT_EQ(get(preferences_, kDefaultDestination), after);
    }

    set(preferences_, kHasUpgradedFromPre13, false);
    set(preferences_, kDefaultDestination, 3);
    const auto stored = platform_.store.values;
    preferences_.setForThisRun(kDefaultDestination.key, "1");
    upgradeDestinationIndex(preferences_);
    clampDefaultDestination(preferences_, 0);
    EXPECT_EQ(get(preferences_, kDefaultDestination), 1);
    EXPECT_EQ(platform_.store.values, stored) << "the stored choice waits for its own launch";
}

}  // namespace
}  // namespace reelvane
