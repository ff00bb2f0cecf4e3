#include "support/alerts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/dispatch.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

using testing::ElementsAre;

struct AlertTest : testing::Test {
    FakePlatform platform;
    Vantor& vantor = platform.vantor;
    std::deque<AlertAnswer>& answers = platform.alerts.answers;
    std::vector<AlertContent>& shown = platform.alerts.shown;
};

const SuppressibleWarning kWarning{"warningalias", "Title", "Message", "OK", "Don't warn again"};

TEST_F(AlertTest, AWarningIsShownUntilItsBoxWasTickedInThisVersion) {
    answers = {{.suppressed = false}, {.suppressed = true}};
    for (int i = 0; i < 3; ++i) alert_dontwarnagain_version(vantor, kWarning);
    EXPECT_EQ(platform.store.values["_warningalias_1.2_asked"], "1");
    EXPECT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0].suppressionTitle, "Don't warn again");

    platform.mainBundle.info["ShortVersion"] = "1.3";
    Vantor next(vantor.ports(), platform.preferences);
    alert_dontwarnagain_version(next, kWarning);
    alert_dontwarnagain_ever(next, kWarning);
    EXPECT_EQ(shown.size(), 4U);
    EXPECT_EQ(platform.store.values["_warningalias_asked"], "0");

    answers = {{.suppressed = true}};
    alert_dontwarnagain_ever(next, kWarning);
    platform.preferences.setDefaultInt("AutoAdd", 1);
    alert_warnagain(next);
    EXPECT_THAT(platform.store.values, ElementsAre(testing::Pair("AutoAdd", "1")));
}

TEST_F(AlertTest, AnAlertSpeaksTheUsersLanguageButIsKnownAndAnsweredWithoutIt) {
    platform.translations.texts = {
        {"Title", "Titel"}, {"OK", "Gut"}, {"Cancel", "Abbrechen"}, {"Don't warn again", "Nie"}};
    answers = {{.suppressed = true}, {}};
    alert_dontwarnagain_ever(vantor, kWarning);
    EXPECT_EQ(shown[0].title, "Titel");
    EXPECT_THAT(shown[0].buttons, ElementsAre("Gut"));
    EXPECT_EQ(shown[0].suppressionTitle, "Nie");
    EXPECT_EQ(platform.store.values["_warningalias_asked"], "1");
    alert(vantor, "Title", "", "Cancel", "Quit");
    EXPECT_EQ(cautiousButton(shown[1]), kFirstButton);
}

TEST_F(AlertTest, AWarningRaisedElsewhereFollowsOnTheMainThread) {
    answers = {{.suppressed = true}};
    dispatch_async_back(vantor, [&] {
        alert_dontwarnagain_version(vantor, kWarning);
        alert_dontwarnagain_version(vantor, kWarning);
        EXPECT_TRUE(shown.empty());
    });
    platform.dispatcher.runPending();
    EXPECT_EQ(shown.size(), 1U) << "the second finds the box ticked";
}

TEST_F(AlertTest, AlertsRaisedBehindAnotherWaitForItAndAreShownAsOne) {
    platform.alerts.whileOpen = [&, first = true]() mutable {
        if (!std::exchange(first, false)) return;
        for (int i = 0; i < 60; ++i) alert(vantor, "a.mkv", std::to_string(i), "OK");
        alert_dontwarnagain_ever(vantor, kWarning);
        alert_dontwarnagain_ever(vantor, kWarning);
        EXPECT_EQ(shown.size(), 1U);
        alert(vantor, "Sure?", "", "Yes", "No");
        EXPECT_EQ(shown.back().title, "Sure?") << "an answer is waited for";
    };
    answers = {{}, {}, {}, {.suppressed = true}};
    alert_apptitled(vantor, "first", "OK");
    EXPECT_EQ(shown.size(), 2U);
    platform.dispatcher.runPending();
    ASSERT_EQ(shown.size(), 4U) << "the last warning finds its box ticked";
    EXPECT_THAT(shown[2].message, testing::StartsWith("a.mkv\n0\n\na.mkv\n1\n\n"));
    EXPECT_THAT(shown[2].message, testing::EndsWith("There were 30 more messages."));
    EXPECT_EQ(shown[3].title, "Title");
}

TEST_F(AlertTest, AValueAlertHandsBackWhatItsAccessoryHolds) {
    answers = {{.button = kSecondButton, .index = 0}, {.text = "typed"}, {.index = 1}};
    bool checked = true;
    EXPECT_EQ(alert_checkbox(vantor, "Prompt", {"1", "2", "3", "4"}, "Box", checked), 1001);
    EXPECT_THAT(shown[0].buttons, ElementsAre("1", "2", "3"));
    EXPECT_FALSE(checked);
    std::string text = "before";
    alert_input(vantor, "Prompt", {"OK"}, text);
    EXPECT_EQ(text, "typed");
    std::size_t selected = 9;
    alert_selection_popup(vantor, "Prompt", {"a", "b"}, {}, selected);
    EXPECT_EQ(shown[2].accessory.index, 0) << "there is no tenth item";
    EXPECT_EQ(selected, 1U);
}

}  // namespace
}  // namespace reelvane
