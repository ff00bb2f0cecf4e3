#include <gtest/gtest.h>

#include "app/preference_table.h"
#include "app/settings_reader.h"
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
