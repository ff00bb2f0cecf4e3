#include "app/launch_corrections.h"

#include <gtest/gtest.h>

#include "app/preference_keys.h"
#include "app/preference_table.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

class LaunchCorrections : public testing::Test {
protected:
    LaunchCorrections() { preferences_.registerDefaults(registeredDefaults()); }

    FakePlatform platform_;
    Preferences& preferences_ = platform_.preferences;
};

TEST_F(LaunchCorrections, PutMenuValuesRight) {
    struct Case {
        std::string_view key;
        int stored, corrected;
    };
    for (const auto& [key, stored, corrected] :
         std::initializer_list<Case>{{kExternalSubtitleEncodingKey, 1, 0},
                                     {kExternalSubtitleEncodingKey, 2, 2},
                                     {kExternalSubtitleEncodingKey, 99, 99},
                                     {kCustomUnknownHandlingKey, 3, 1},
                                     {kCustomUnknownHandlingKey, -1, 1},
                                     {kCustomUnknownHandlingKey, 0, 0}}) {
        preferences_.setDefaultInt(key, stored);
        correctMenuValues(preferences_);
        EXPECT_EQ(preferences_.defaultInt(key), corrected) << key << " " << stored;
    }
}

TEST_F(LaunchCorrections, ClampTheDestinationToTheSavedFolders) {
    struct Case {
        std::size_t folders;
        int stored, clamped;
    };
    for (const auto& [folders, stored, clamped] : std::initializer_list<Case>{{2, 4, 4},
                                                                              {2, 5, 3},
                                                                              {2, 6, 3},
                                                                              {2, 2, 0},
                                                                              {1, 4, 0},
                                                                              {1, 3, 3},
                                                                              {0, 3, 1},
                                                                              {0, 1, 1},
                                                                              {0, 0, 0},
                                                                              {2, 3, 3}}) {
        preferences_.setDefaultInt(kDefaultDestinationKey, stored);
        clampDefaultDestination(preferences_, folders);
        EXPECT_EQ(preferences_.defaultInt(kDefaultDestinationKey), clamped) << stored;
    }
}

TEST_F(LaunchCorrections, UpgradeAStoredDestinationOnce) {
    preferences_.setDefaultInt(kDefaultDestinationKey, 3);
    upgradeDestinationIndex(preferences_);
    upgradeDestinationIndex(preferences_);
    EXPECT_EQ(preferences_.defaultInt(kDefaultDestinationKey), 4);
    EXPECT_EQ(preferences_.defaultInt(kHasUpgradedFromPre13Key), 1);
}

TEST_F(LaunchCorrections, LeaveZeroAndTheChoicesOfThisRunAlone) {
    upgradeDestinationIndex(preferences_);
    EXPECT_EQ(preferences_.defaultInt(kDefaultDestinationKey), 0);

    preferences_.setDefaultInt(kHasUpgradedFromPre13Key, 0);
    preferences_.setDefaultInt(kDefaultDestinationKey, 3);
    const auto stored = platform_.store.values;
    preferences_.setForThisRun(kDefaultDestinationKey, "1");
    upgradeDestinationIndex(preferences_);
    clampDefaultDestination(preferences_, 0);
    EXPECT_EQ(preferences_.defaultInt(kDefaultDestinationKey), 1);
    EXPECT_EQ(platform_.store.values, stored) << "the stored choice waits for its own launch";
}

TEST_F(LaunchCorrections, HintAtSpeedOnlyForFrequentUsersOfTheCompatibleStyle) {
    const auto due = [this](int shown, int usages, int preset) {
        preferences_.setDefaultInt(kWelcomeShownKey, shown);
        preferences_.setDefaultInt("vantor_1.2_usages", usages);
        preferences_.setDefaultInt(kConversionPresetKey, preset);
        return speedHintIsDue(preferences_, "1.2");
    };
    EXPECT_TRUE(due(0, 4, 0));
    EXPECT_FALSE(due(1, 4, 0));
    EXPECT_FALSE(due(0, 3, 0));
    EXPECT_FALSE(due(0, 4, 1));
}

}  // namespace
}  // namespace reelvane
