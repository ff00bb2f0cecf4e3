#include "app/preference_table.h"

#include <gmock/gmock.h>
#include <set>
#include <tuple>

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

}  // namespace
}  // namespace reelvane
