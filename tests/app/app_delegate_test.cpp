#include "app/app_delegate.h"

#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

using enum ConversionJobState;

class AppDelegateTest : public AppFixture {
protected:
    [[nodiscard]] std::vector<ConversionJobState> states() const {
        std::vector<ConversionJobState> states;
        for (const auto& row : app_->queue().taskArray()) states.push_back(row->state());
        return states;
    }
    [[nodiscard]] std::string title() const { return app_->queueControl().windowTitle().get(); }
};

TEST_F(AppDelegateTest, TheNewestJobRunsNextUnlessTheyGoToTheBottom) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    EXPECT_THAT(rows(), ElementsAre("c.mkv", "b.mkv", "a.mkv"));
    EXPECT_THAT(states(), ElementsAre(Queued, Queued, Converting));
    EXPECT_EQ(title(), "Reelvane  [3 Job(s), 2 Queued]");
    set(kInsertJobsAtBottom.key, 1);
    add({movie("d.mkv")});
    finish(0);
    EXPECT_THAT(rows(), ElementsAre("c.mkv", "b.mkv", "a.mkv", "d.mkv"));
    EXPECT_THAT(states(), ElementsAre(Converting, Queued, Finished, Queued));
    launch();
    open({movie("a.mkv"), movie("b.mkv")});
    EXPECT_THAT(states(), ElementsAre(Queued, Converting)) << "the last of a batch starts it";
}

TEST_F(AppDelegateTest, PausingSuspendsAndResumingTakesTheTopmostJob) {
    launch();
    EXPECT_EQ(title(), "Reelvane ");
    togglePause();
    EXPECT_EQ(title(), "Reelvane (Paused)");
    EXPECT_EQ(app_->queueControl().addButtonTitle().get(), "Add to Queue");
    add({movie("a.mkv"), movie("b.mkv")});
    EXPECT_THAT(states(), ElementsAre(Queued, Queued));
    togglePause();
    EXPECT_THAT(states(), ElementsAre(Converting, Queued));
    togglePause();
    EXPECT_THAT(states(), ElementsAre(Paused, Queued));
    EXPECT_TRUE(platform_.processLauncher.children[0].suspended);
    EXPECT_EQ(title(), "Reelvane (Paused) [2 Job(s), 1 Queued]");
    app_->queueControl().continueJob(*app_->queue().taskArray()[1]);
    settle();
    EXPECT_FALSE(app_->queueControl().paused()) << "a job that the user starts un-pauses the queue";
    EXPECT_THAT(states(), ElementsAre(Paused, Converting)) << "but starts no other";
    EXPECT_EQ(app_->queueControl().pauseTitle().get(), "Pause Queue");
    app_->queueControl().continueJob(*app_->queue().taskArray()[0]);
    settle();
    EXPECT_THAT(states(), ElementsAre(Paused, Converting)) << "never two at a time";
    fail(1);
    EXPECT_THAT(states(), ElementsAre(Converting, Failed)) << "a paused job goes on in its turn";
}

TEST_F(AppDelegateTest, NothingStartsBesideARunThatIsBeingReadBack) {
    add({movie("a.mkv"), movie("b.mkv")});
    platform_.folder.write("a.m4v", SmallMp4{}.bytes());
    platform_.processLauncher.children.at(0).exit(0);
    app_->queueControl().togglePause();
    app_->queueControl().togglePause();
    EXPECT_EQ(app_->queue().jobsAtWork().size(), 1U);
    settle();
    EXPECT_THAT(states(), ElementsAre(Converting, Finished));
}

TEST_F(AppDelegateTest, AnUnwritableDestinationMakesNoJobAndLeavesTheMovieToTheUser) {
    for (const bool unattended : {false, true}) {
        launch({.destinationFolder = "/proc/no/such/folder", .unattended = unattended});
        open({movie("a.mkv"), movie("b.mkv")});
        EXPECT_THAT(rows(), IsEmpty());
        EXPECT_THAT(unattended ? refusalTexts_.back() : lastAlert(),
                    HasSubstr("the selected destinatation or it is a read-only"));
        if (unattended) break;
        EXPECT_EQ(platform_.alerts.shown.back().title, "a.mkv") << "whose alert it is";
        EXPECT_EQ(app_->intake().state(), IntakeState::AwaitingUser);
        EXPECT_EQ(app_->intake().fileInfo()->fileName, "a.mkv") << "for another choice";
        EXPECT_THAT(refused_, IsEmpty());
    }
    EXPECT_THAT(refused_, ElementsAre("a.mkv", "b.mkv")) << "nobody is there to choose another";
    EXPECT_FALSE(app_->intake().isBusy());
}

TEST_F(AppDelegateTest, AnAutomaticNameIsCheckedOnceMoreAtTheStart) {
    add({movie("a.mkv"), movie("b.mkv")});
    const auto foreign = platform_.folder.write("b.m4v", "of another program");
    finish(0);
    EXPECT_EQ(job(0).state(), Converting);
    EXPECT_EQ(output(0), "b-0.m4v");
    EXPECT_EQ(fs::file_size(foreign), 18);
}

TEST_F(AppDelegateTest, ARemovedJobLeavesAForeignFileAtItsAutomaticPath) {
    add({movie("a.mkv"), movie("b.mkv")});
    togglePause();
    const auto queued = platform_.folder.write("b.m4v", "of another program");
    removeTop();
    fail(0);
    const auto failed = platform_.folder.write("a.m4v", "of another program");
    removeTop();
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_TRUE(fs::exists(queued) && fs::exists(failed));
}

TEST_F(AppDelegateTest, AStartThatCannotRunLeavesTheQueueStanding) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    fs::remove(platform_.folder.path() / "c.mkv");
    finish(0);
    EXPECT_THAT(states(), ElementsAre(Failed, Queued, Finished));
    EXPECT_THAT(lastAlert(), HasSubstr("removed the file c.mkv"));
    app_->queueControl().cleanClicked();
    settle();
    EXPECT_THAT(rows(), ElementsAre("c.mkv", "b.mkv"));
    EXPECT_EQ(job(1).state(), Converting) << "a removal asks for the next job";
}

TEST_F(AppDelegateTest, ARefusedStartLetsTheNextJobRunOnceTheUserHasReadWhy) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    platform_.processLauncher.nextError = LaunchError::NotFound;
    platform_.alerts.whileOpen = [this] {
        EXPECT_THAT(states(), ElementsAre(Failed, Queued, Finished));
        EXPECT_FALSE(app_->queue().isAtWork()) << "not behind the alert";
        platform_.processLauncher.nextError = LaunchError::None;
    };
    finish(0);
    EXPECT_THAT(states(), ElementsAre(Failed, Converting, Finished));
}

TEST_F(AppDelegateTest, TheQueueGoesOnWhenAllOfSeveralAreRemoved) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv"), movie("d.mkv")});
    const auto& jobs = app_->queue().taskArray();
    app_->queueControl().removeJobs({jobs[3].get(), jobs[0].get(), jobs[1].get()});
    settle();
    EXPECT_EQ(platform_.processLauncher.children.size(), 2) << "none that goes was started";
    EXPECT_EQ(title(), "Reelvane  [1 Job(s), 0 Queued]");
}

TEST_F(AppDelegateTest, OneNameInOneFolderIsNumberedFromTheLowestThatIsFree) {
    launch({.destinationFolder = platform_.folder.path()});
    for (const auto* const folder : {"1", "2", "3", "4"}) {
        fs::create_directory(platform_.folder.path() / folder);
        add({movie(std::string(folder) + "/a.mkv")});
    }
    EXPECT_EQ(output(0), "a-2.m4v");
    app_->queue().taskArray()[1]->remove();
    settle();
    add({movie("2/a.mkv")});
    EXPECT_EQ(output(0), "a-1.m4v");
}

TEST_F(AppDelegateTest, AJobMayGoInsideItsOwnCallBack) {
    set(kAutoClean.key, 1);
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    finish(0);
    EXPECT_THAT(rows(), ElementsAre("c.mkv", "b.mkv"));
    EXPECT_TRUE(fs::exists(platform_.folder.path() / "a.m4v"));
    platform_.alerts.whileOpen = [this] { removeTop(); };
    platform_.processLauncher.children.at(1).print("No space left on device\n");
    fail(1);
    EXPECT_THAT(rows(), ElementsAre("b.mkv"));
    EXPECT_THAT(states(), ElementsAre(Converting));
}

TEST_F(AppDelegateTest, EverySuccessIsCountedAndTheLastMayQuit) {
    set(kQuitAfterConversion.key, 1);
    add({movie("a.mkv"), movie("b.mkv")});
    fail(0);
    finish(1);
    EXPECT_EQ(terminated_, 0) << "a failed job keeps the program open";
    EXPECT_EQ(get(platform_.preferences, kConvertedFileCount), 1);
    EXPECT_EQ(platform_.preferences.defaultInt("vantor_1.2_usages"), 1);
    app_->queue().taskArray().back()->remove();
    settle();
    EXPECT_EQ(terminated_, 0) << "not behind the user's back";
    app_->intake().refusedFiles().add({.file = "z.webm", .reason = "not a movie"});
    add({movie("c.mkv")});
    finish(2);
    app_->intake().refusedFiles().clear();
    settle();
    EXPECT_EQ(terminated_, 0) << "a refusal is to be read like a failure";
    add({movie("d.mkv")});
    finish(3);
    EXPECT_EQ(terminated_, 1);
}

TEST_F(AppDelegateTest, QuittingAfterTheConversionsWaitsForWhatTheUserStillDoes) {
    set(kQuitAfterConversion.key, 1);
    add({movie("a.mkv"), movie("b.mkv")});
    set(kAutoAdd.key, 0);
    open({movie("c.mkv")});
    app_->queueControl().removeJobs({app_->queue().taskArray().front().get()});
    finish(0);
    app_->intake().cancelAdd();
    settle();
    EXPECT_EQ(terminated_, 0) << "the removal of b.mkv can be undone";
    platform_.dispatcher.advance(kUndoTime);
    EXPECT_EQ(terminated_, 1) << "c.mkv was left";

    open({movie("d.mkv")});
    app_->intake().addToQueue();
    settle();
    platform_.processLauncher.children.at(1).print("f.mkv: Input/output error\n");
    finish(1);
    EXPECT_EQ(terminated_, 1) << "d.mkv may be damaged";
    app_->queue().taskArray().front()->remove();

    open({movie("e.mkv")});
    app_->queueControl().togglePause();
    app_->intake().addToQueue();
    settle();
    platform_.dispatcher.advance(kUndoTime);
    EXPECT_EQ(terminated_, 1) << "e.mkv waits";
}

TEST_F(AppDelegateTest, AConversionThatRunsStartsOrIsPausedAsksBeforeQuitting) {
    platform_.alerts.answers = {{.button = kSecondButton}};
    launch();
    app_->queueControl().togglePause();
    add({movie("a.mkv")});
    EXPECT_TRUE(app_->lifecycle().applicationShouldTerminate());
    EXPECT_THAT(platform_.alerts.shown, IsEmpty()) << "a queued one alone does not ask";
    platform_.dispatcher.isSilent = true;
    app_->queueControl().continueJob(*app_->queue().taskArray().front());
    EXPECT_FALSE(app_->lifecycle().applicationShouldTerminate()) << "it is starting";
    platform_.dispatcher.isSilent = false;
    app_->queue().taskArray().front()->remove();
    add({movie("b.mkv")});
    EXPECT_TRUE(app_->lifecycle().applicationShouldTerminate());
    EXPECT_EQ(lastAlert(), "Conversion is in progresss. Are you sure you want to quit?");
    EXPECT_TRUE(platform_.alerts.shown.back().destructive);
    togglePause();
    EXPECT_TRUE(app_->lifecycle().applicationShouldTerminate());
    EXPECT_EQ(platform_.alerts.shown.size(), 3);
    finish(0);
    EXPECT_TRUE(app_->lifecycle().applicationShouldTerminate());
    EXPECT_EQ(platform_.alerts.shown.size(), 3);
}

TEST_F(AppDelegateTest, QuittingEndsEveryJobAndLeavesNothingBehind) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    platform_.folder.write("a.m4v", "partial");
    app_->applicationWillTerminate();
    EXPECT_THAT(rows(), IsEmpty());
    for (const auto& child : platform_.processLauncher.children) EXPECT_TRUE(child.terminated);
    EXPECT_FALSE(fs::exists(platform_.folder.path() / "a.m4v"));
}

TEST_F(AppDelegateTest, TheSpeedHintIsShownOnce) {
    set(kWelcomeShown.key, 0);
    set("vantor_1.2_usages", 4);
    launch();
    launch();
    ASSERT_EQ(platform_.alerts.shown.size(), 1);
    EXPECT_EQ(platform_.alerts.shown[0].title, "Picking up Speed!");
}

}  // namespace
}  // namespace reelvane
