#include "app/queue_progress.h"

#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

TEST(QueueProgressSums, JobsOfUnknownLengthWeighAsTheOthersDo) {
    EXPECT_EQ(queueProgress({.timed = 2, .seconds = 400, .secondsDone = 100}), 0.25);
    EXPECT_EQ(queueProgress({.untimed = 3, .untimedDone = 1}), 0.333);
    EXPECT_EQ(queueProgress({.timed = 2, .seconds = 400, .untimed = 2, .untimedDone = 1}), 0.25);
}

TEST_F(AppFixture, TheQueuesProgressIsThatOfTheBatch) {
    launch();
    QueueProgress progress(app_->queue());
    const auto fraction = [&progress] { return progress.fraction().get(); };
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    const auto& arguments = platform_.processLauncher.children[0].request.arguments;
    std::ofstream(*std::next(std::ranges::find(arguments, "-progress"))) << "out_time_ms=6000000\n";
    platform_.dispatcher.advance(std::chrono::seconds(1));
    EXPECT_EQ(fraction(), 0.166) << "half of one in three";
    finish(0);
    app_->queueControl().cleanClicked();
    EXPECT_EQ(fraction(), 0.333) << "what is done stays done";
    report_.replace(report_.find("00:00:12"), 8, "00:00:24");
    add({movie("d.mkv")});
    EXPECT_EQ(fraction(), 0.2) << "12 of 60 seconds";
    app_->queue().taskArray().front()->remove();
    fail(1);
    EXPECT_EQ(fraction(), 0.666);
    finish(2);
    EXPECT_EQ(fraction(), std::nullopt);
    add({movie("e.mkv")});
    EXPECT_EQ(fraction(), 0) << "the next batch starts anew";
}

}  // namespace
}  // namespace reelvane
