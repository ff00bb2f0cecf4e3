#include "app/preference_table.h"

#include <gmock/gmock.h>
#include <set>

#include "app/preference_keys.h"
#include "app/settings_reader.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

TEST(PreferenceTable, EveryKeyStandsOnceWithADefaultOfItsOwnTypeAndRange) {
    std::set<std::string_view> keys;
    for (const auto& entry : preferenceTable()) {
        EXPECT_TRUE(keys.insert(entry.key).second) << entry.key;
        EXPECT_EQ(storedText(entry, entry.defaultText), entry.defaultText) << entry.key;
        EXPECT_TRUE(entry.meaning.ends_with('.')) << entry.key;
        EXPECT_EQ(findPreference(entry.key), &entry);
    }
    EXPECT_EQ(findPreference("NoSuchKey"), nullptr);
    EXPECT_EQ(registeredDefaults().size(), 32);
    EXPECT_FALSE(registeredDefaults().contains(kConvertedFileCountKey));
}

TEST(PreferenceTable, TakesWhatAPersonTypesOnlyWhenItFits) {
    struct Case {
        std::string_view key, typed;
        std::optional<std::string> stored;
    };
    for (const auto& [key, typed, stored] :
         std::initializer_list<Case>{{kAutoAddKey, "Yes", "1"},
                                     {kAutoAddKey, " off ", "0"},
                                     {kAutoAddKey, "2", {}},
                                     {kAutoAddKey, "", {}},
                                     {kAACBitrateKey, "3", "3"},
                                     {kAACBitrateKey, "03", "3"},
                                     {kAACBitrateKey, "4", {}},
                                     {kAACBitrateKey, "-1", {}},
                                     {kAACBitrateKey, "1x", {}},
                                     {kAACBitrateKey, "99999999999", {}},
                                     {kExternalSubtitleEncodingKey, "1", {}},
                                     {kExternalSubtitleEncodingKey, "38", "38"},
                                     {kDefaultAudioKey, "1", {}},
                                     {kDefaultAudioKey, "8", "8"},
                                     {kDefaultDestinationKey, "2", {}},
                                     {kDefaultDestinationKey, "1000", "1000"},
                                     {kCustomUnknownHandlingKey, "2", {}},
                                     {kAudioVolumeKey, "150.50", "150.5"},
                                     {kAudioVolumeKey, "-0", "0"},
                                     {kAudioVolumeKey, "nan", {}},
                                     {kAudioVolumeKey, "inf", {}},
                                     {kAudioVolumeKey, "1000.1", {}},
                                     {kAudioVolumeKey, "1,5", {}},
                                     {kDestinationNamesKey, "", "()"},
                                     {kDestinationNamesKey, "Films", {}}})
        EXPECT_EQ(storedText(*findPreference(key), typed), stored) << key << " " << typed;
}

TEST(PreferenceTable, NamesTypeAndRange) {
    const auto named = [](std::string_view key) { return typeText(*findPreference(key)); };
    EXPECT_EQ(named(kAutoAddKey), "yes or no (1 or 0)");
    EXPECT_EQ(named(kAACBitrateKey), "integer, 0 to 3");
    EXPECT_EQ(named(kDefaultAudioKey), "integer, 0 to 8 but not 1");
    EXPECT_EQ(named(kDefaultDestinationKey), "integer, 0 or more but not 2");
    EXPECT_EQ(named(kAudioVolumeKey), "number, 0 to 1000");
    EXPECT_EQ(named(kDestinationBookmarksKey), "list of data");
}

TEST(SettingsReader, EachKeyReachesItsOwnSettingAndNoOther) {
    FakePlatform platform;
    auto& preferences = platform.preferences;
    const auto values = [&] {
        const auto s = readConversionSettings(preferences);
        const auto& a = s.audio;
        return std::map<std::string_view, float>{
            {kConversionPresetKey, a.conversionPreset},
            {kAC3DownmixKey, a.ac3Downmix},
            {kDTSDownmixKey, a.dtsDownmix},
            {kCustomAC3HandlingKey, a.customAC3Handling},
            {kCustomAC351HandlingKey, a.customAC351Handling},
            {kCustomDTSHandlingKey, a.customDTSHandling},
            {kCustomDTS51HandlingKey, a.customDTS51Handling},
            {kCustomMP3HandlingKey, a.customMP3Handling},
            {kCustomVorbisHandlingKey, a.customVorbisHandling},
            {kCustomUnknownHandlingKey, a.customUnknownHandling},
            {kAACBitrateKey, s.aacBitrate},
            {kAC3StereoBitrateKey, s.ac3StereoBitrate},
            {kAC3SurroundBitrateKey, s.ac3SurroundBitrate},
            {kAudioVolumeKey, s.audioVolume},
            {kIncludeSurroundTrackKey, s.includeSurroundTrack},
            {kIncludeSurroundTrackTranscodedKey, s.includeSurroundTrackTranscoded},
            {kDisableBuiltinSubtitlesKey, s.disableBuiltinSubtitles},
            {kExternalSubtitleEncodingKey, s.externalSubtitleEncoding},
            {kProduceStreamableFilesKey, s.produceStreamableFiles},
            {kFixSubtitleDurationKey, s.fixSubtitleDuration},
            {kAutoCleanKey, s.autoClean},
            {kAutoRemoveKey, s.autoRemove},
            {kAutoRemoveTypeKey, s.autoRemoveType},
            {kQuitAfterConversionKey, s.quitAfterConversion},
            {kHEAACConvertKey, readProbeOptions(preferences).heAACConvert}};
    };
    const auto unset = values();
    for (const auto& [key, value] : unset) {
        preferences.setDefaultInt(key, 1);
        auto expected = unset;
        expected[key] = 1;
        EXPECT_EQ(values(), expected) << key;
        preferences.setDefaultObject(key, std::nullopt);
    }
    preferences.registerDefaults(registeredDefaults());
    EXPECT_EQ(values().at(kAudioVolumeKey), 100);
}

}  // namespace
}  // namespace reelvane
