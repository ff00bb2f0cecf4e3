#include "app/lifecycle.h"

#include <string>
#include <vector>

#include "support/ports/bundle_watch.h"
#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

using LifecycleTest = AppFixture;

TEST_F(LifecycleTest, AClickRevealsTheOutputAndAFailureHasNone) {
    open({movie("A.mkv"), movie("B.mkv")});
    finish(0);
    fail(1);
    for (const auto& each : platform_.notifications.delivered) {
        platform_.notifications.activated(each);
    }
    EXPECT_EQ(platform_.notifications.delivered.size(), 2U);
    EXPECT_THAT(platform_.workspace.revealed, ElementsAre(platform_.folder.path() / "B.m4v"));
}

TEST_F(LifecycleTest, WindowsAreAskedForInFront) {
    launch();
    std::vector<std::string> asked;
    const auto requests = app_->windows().observe([&](const WindowRequest& request) {
        asked.push_back(std::to_string(static_cast<int>(request.kind)) +
                        (request.tab ? " tab " + std::to_string(*request.tab) : ""));
    });
    EXPECT_FALSE(app_->applicationShouldHandleReopen());
    app_->windows().openDocumentationWindow(2);
    app_->windows().openDocumentationWindow(-1);
    app_->windows().openPromotion();
    open({movie("A.mkv")});
    EXPECT_THAT(asked, ElementsAre("0", "1 tab 2", "1", "2", "0"));
}

TEST_F(LifecycleTest, AMovedProgramStartsAgainFromItsNewPlaceOrSaysThatItCannot) {
    for (const bool works : {true, false}) {
        launch();
        std::vector<fs::path> started;
        app_->lifecycle().setRelaunch([&](const fs::path& bundle) {
            started.push_back(bundle);
            return works;
        });
        platform_.bundleWatch.path = "/moved";
        platform_.alerts.shown.clear();
        platform_.bundleWatch.tell(kRootChangedFlags | 1U);
        EXPECT_THAT(platform_.alerts.shown, IsEmpty());
        platform_.bundleWatch.tell(kRootChangedFlags);
        platform_.dispatcher.runPending();
        EXPECT_THAT(started, ElementsAre("/moved"));
        EXPECT_EQ(platform_.alerts.shown.size(), works ? 1U : 2U);
        EXPECT_THAT(lastAlert(), HasSubstr(works ? "has been moved" : "could not restart itself"));
    }
    EXPECT_EQ(terminated_, 2);
}

}  // namespace
}  // namespace reelvane
