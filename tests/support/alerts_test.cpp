#include "support/alerts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/dispatch.h"
#include "support/value_alerts.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

using testing::ElementsAre;

TEST(Alert, HasOnlyTheButtonsThatAreNamed) {
    FakePlatform platform;
    platform.alerts.answers = {{.button = kFirstButton}, {.button = kThirdButton}};
    EXPECT_EQ(alert(platform.vantor, "Title", "Message", "OK"), 1000);
    EXPECT_EQ(alert_apptitled(platform.vantor, "Sure?", "Quit", "Cancel", "Help"), 1002);
    const auto& shown = platform.alerts.shown;
    EXPECT_EQ(shown[0].title, "Title");
    EXPECT_THAT(shown[0].buttons, ElementsAre("OK"));
    EXPECT_EQ(shown[1].title, "Reelvane");
    EXPECT_EQ(shown[1].message, "Sure?");
    EXPECT_THAT(shown[1].buttons, ElementsAre("Quit", "Cancel", "Help"));
    EXPECT_EQ(shown[1].suppressionTitle, std::nullopt);
}

const SuppressibleWarning kWarning{.identifier = "warningalias",
                                   .title = "Title",
                                   .message = "Message",
                                   .button = "OK",
                                   .suppressionTitle = "Don't warn again"};

TEST(Warning, IsShownUntilItsBoxWasTickedInThisVersion) {
    FakePlatform platform;
    platform.alerts.answers = {{.suppressed = false}, {.suppressed = true}};
    alert_dontwarnagain_version(platform.vantor, kWarning);
    EXPECT_EQ(platform.store.values["_warningalias_1.2_asked"], "0");
    alert_dontwarnagain_version(platform.vantor, kWarning);
    EXPECT_EQ(platform.store.values["_warningalias_1.2_asked"], "1");
    alert_dontwarnagain_version(platform.vantor, kWarning);
    EXPECT_EQ(platform.alerts.shown.size(), 2U);
    EXPECT_EQ(platform.alerts.shown[0].suppressionTitle, "Don't warn again");

    platform.mainBundle.info["ShortVersion"] = "1.3";
    Vantor next(platform.vantor.ports(), platform.preferences);
    platform.alerts.answers = {{.suppressed = true}};
    alert_dontwarnagain_version(next, kWarning);
    EXPECT_EQ(platform.alerts.shown.size(), 3U);
    alert_dontwarnagain_ever(next, kWarning);
    EXPECT_EQ(platform.alerts.shown.size(), 4U);
    EXPECT_EQ(platform.store.values["_warningalias_asked"], "0");
}

TEST(Warning, FollowsOnTheMainThreadWhenRaisedElsewhere) {
    FakePlatform platform;
    std::size_t shownAtReturn = 99;
    dispatch_async_back(platform.vantor, [&] {
        alert_dontwarnagain_version(platform.vantor, kWarning);
        alert_dontwarnagain_version(platform.vantor, kWarning);
        shownAtReturn = platform.alerts.shown.size();
    });
    platform.alerts.answers = {{.suppressed = true}};
    platform.dispatcher.runPending();
    EXPECT_EQ(shownAtReturn, 0U);
    EXPECT_EQ(platform.alerts.shown.size(), 1U);  // the second finds the box ticked
}

TEST(ValueAlert, HandsBackWhatItsAccessoryHolds) {
    FakePlatform platform;
    platform.alerts.answers = {
        {.button = kSecondButton, .index = 0}, {.text = "typed"}, {.text = "long"}, {.index = 1}};
    bool checked = true;
    EXPECT_EQ(alert_checkbox(platform.vantor, "Prompt", {"1", "2", "3", "4"}, "Box", checked),
              1001);
    EXPECT_FALSE(checked);
    std::string text = "before";
    alert_input(platform.vantor, "Prompt", {"OK"}, text);
    EXPECT_EQ(text, "typed");
    alert_inputtext(platform.vantor, "Prompt", {"OK"}, text);
    EXPECT_EQ(text, "long");
    std::size_t selected = 9;
    alert_selection_popup(platform.vantor, "Prompt", {"a", "b"}, {}, selected);
    EXPECT_EQ(selected, 1U);

    const auto& shown = platform.alerts.shown;
    EXPECT_THAT(shown[0].buttons, ElementsAre("1", "2", "3"));
    EXPECT_EQ(shown[0].accessory.index, 1);
    EXPECT_EQ(shown[1].accessory.text, "");  // asks for something new
    EXPECT_EQ(shown[2].accessory.text, "typed");
    EXPECT_EQ(shown[3].accessory.index, 0);  // there is no tenth item
    EXPECT_THAT(shown[3].buttons, ElementsAre("OK"));
}

TEST(ValueAlert, ShowsTheEndsOfLongRows) {
    FakePlatform platform;
    std::string exact;
    for (int i = 0; i < 150; ++i) exact += "é";
    const auto longer = std::string(75, 'a') + std::string(76, 'z');
    std::size_t selected = 0;
    alert_selection_matrix(platform.vantor, "Prompt", {exact, longer}, {"OK"}, selected);
    EXPECT_THAT(platform.alerts.shown[0].accessory.items,
                ElementsAre(exact, std::string(70, 'a') + " […] " + std::string(70, 'z')));
}

}  // namespace
}  // namespace reelvane
