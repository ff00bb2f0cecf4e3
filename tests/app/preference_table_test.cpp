#include "app/preference_table.h"

#include <gmock/gmock.h>
#include <set>
#include <tuple>

#include "app/settings_reader.h"
#include "support/make_string.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

TEST(PreferenceTable, EveryKeyStandsOnceWithADefaultOfItsOwnTypeAndRange) {
    std::set<std::string_view> keys;
    for (const auto& entry : preferenceTable()) {
        EXPECT_TRUE(keys.insert(entry.key).second) << entry.key;
        EXPECT_EQ(storedText(entry, defaultText(entry)), defaultText(entry)) << entry.key;
        EXPECT_TRUE(entry.meaning.ends_with('.')) << entry.key;
    }
    EXPECT_EQ(registeredDefaults().size(), 32);
    EXPECT_FALSE(registeredDefaults().contains(kConvertedFileCount.key));
}

TEST(PreferenceTable, TakesWhatAPersonTypesOnlyWhenItFits) {
    const auto stored = [](std::string_view key, std::string_view typed) {
        return storedText(*findPreference(key), typed);
    };
    EXPECT_EQ(stored(kAutoAdd.key, "Yes"), "1");
    EXPECT_EQ(stored(kAutoAdd.key, " off "), "0");
    EXPECT_EQ(stored(kAACBitrate.key, "03"), "3");
    EXPECT_EQ(stored(kExternalSubtitleEncoding.key, "38"), "38");
    EXPECT_EQ(stored(kDefaultDestination.key, "1000"), "1000");
    EXPECT_EQ(stored(kAudioVolume.key, "150.50"), "150.5");
    EXPECT_EQ(stored(kAudioVolume.key, "-0"), "0");
    const std::map<std::string_view, std::vector<std::string_view>> refused{
        {kAutoAdd.key, {"2", ""}},
        {kAACBitrate.key, {"4", "-1", "1x", "99999999999"}},
        {kExternalSubtitleEncoding.key, {"1", "39"}},
        {kDefaultAudio.key, {"1", "9"}},
        {kDefaultDestination.key, {"2", "-1"}},
        {kCustomUnknownHandling.key, {"2"}},
        {kAudioVolume.key, {"nan", "inf", "1000.1", "1,5"}},
        {kDestinationNames.key, {"Films"}}};
    for (const auto& [key, values] : refused)
        for (const auto& typed : values) EXPECT_FALSE(stored(key, typed)) << key << " " << typed;
}

TEST(PreferenceTable, AMisfitCountsAsWhatTheProgramDoesWithIt) {
    const std::vector<std::tuple<std::string_view, int, int>> cases{
        {kAACBitrate.key, 3, 3},           {kAACBitrate.key, 9, 1},
        {kConversionPreset.key, 9, 1},     {kDefaultExtension.key, 9, 1},
        {kAutoRemoveType.key, -1, 1},      {kAutoAdd.key, 9, 1},
        {kDefaultAudio.key, 1, 0},         {kExternalSubtitleEncoding.key, 1, 0},
        {kCustomUnknownHandling.key, 3, 1}};
    for (const auto& [key, stored, effective] : cases) {
        EXPECT_EQ(effectiveInteger(*findPreference(key), stored), effective) << key << stored;
    }
}

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

}  // namespace
}  // namespace reelvane
