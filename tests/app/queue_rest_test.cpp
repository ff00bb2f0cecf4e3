#include "app/queue_control.h"
#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

using enum ConversionJobState;

class QueueRestTest : public AppFixture {
protected:
    [[nodiscard]] bool stands() const { return app_->queueRest().hasStopped().get(); }
};

TEST_F(QueueRestTest, TheQueueGoesOnWhenTheLastFileOfABatchLeavesWithoutAJob) {
    // By itself, with three movies and a refused one; by the user, who cancels the last.
    for (const bool byItself : {true, false}) {
        set(kAutoAdd.key, byItself ? 1 : 0);
        launch();
        app_->intake().openFiles({movie("a.mkv"), movie("b.mkv"), movie("z.webm")});
        platform_.processLauncher.answer = [this](const ProcessRequest& request) {
            const bool refused = request.arguments.back().ends_with("z.webm");
            return FinishedProcess{.output = refused ? "" : report_, .exitStatus = 1};
        };
        for (int i = 0; i < 2 && !byItself; ++i) {
            settle();
            app_->intake().addToQueue();
        }
        settle();
        if (!byItself) {
            EXPECT_FALSE(stands()) << "while the user is asked";
            app_->intake().cancelAdd();
            settle();
        }
        EXPECT_FALSE(app_->intake().isBusy());
        EXPECT_THAT(rows(), ElementsAre("b.mkv", "a.mkv"));
        EXPECT_EQ(job(0).state(), Converting);
        EXPECT_FALSE(stands());
    }
}

TEST_F(QueueRestTest, AQueueThatStandsIsSeenUntilItGoesOn) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    EXPECT_FALSE(stands());
    fs::remove(platform_.folder.path() / "c.mkv");
    finish(0);
    EXPECT_TRUE(stands());
    EXPECT_EQ(app_->queueControl().windowTitle().get(), "Reelvane  [3 Job(s), 1 Queued]")
        << "one has failed";
    togglePause();
    EXPECT_FALSE(stands()) << "it is paused, which is said elsewhere";
    togglePause();
    EXPECT_EQ(job(1).state(), Converting);
    EXPECT_FALSE(stands());
}

TEST_F(QueueRestTest, TheMachineMaySleepAMinuteAfterTheLastWork) {
    const auto& held = platform_.powerAssertions.held;
    launch();
    app_->queueControl().togglePause();
    add({movie("gone.mkv")});
    fs::remove(platform_.folder.path() / "gone.mkv");
    togglePause();
    app_->queue().taskArray().front()->remove();
    EXPECT_EQ(held.size(), 1) << "an input that has vanished";
    platform_.dispatcher.advance(std::chrono::seconds(59));
    add({movie("a.mkv")});
    app_->queue().taskArray().front()->remove();
    EXPECT_EQ(held.size(), 2) << "a job that is removed while it runs";
    settle();
    platform_.dispatcher.advance(std::chrono::seconds(59));
    EXPECT_EQ(held.size(), 2);
    platform_.dispatcher.advance(std::chrono::seconds(1));
    EXPECT_THAT(held, IsEmpty());
}

}  // namespace
}  // namespace reelvane
