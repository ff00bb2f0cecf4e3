#include <gmock/gmock.h>

#include "tests/conversion/job_fixture.h"

namespace reelvane {
namespace {

using std::chrono_literals::operator""s;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = ConversionJobState;

TEST_F(JobTest, ASuccessKeepsTheOutputAndAnnouncesIt) {
    startAndWrite();
    platform.dispatcher.advance(5s);
    controller.told.clear();
    child().exit(0, "frame=1 bitrate=1");
    EXPECT_EQ(job->state(), State::Finished);
    EXPECT_TRUE(job->finishedOK());
    EXPECT_EQ(job->progress(), 100);
    EXPECT_EQ(job->jobOutput(), "frame=1 bitrate=1") << "the rest of the pipe is not filtered";
    EXPECT_THAT(controller.told, ElementsAre("startNextJobInQueue", "conversionEnded"));
    EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
    EXPECT_FALSE(exists(progressFile));
    platform.dispatcher.advance(60s);
    EXPECT_EQ(job->stateInfoString(), "Status: Finished [Conversion took: 5s]");
    ASSERT_EQ(platform.notifications.delivered.size(), 1);
    const auto& notification = platform.notifications.delivered[0];
    EXPECT_EQ(notification.title, "Reelvane Conversion Finished");
    EXPECT_EQ(notification.text, "Reelvane has finished converting the file movie.mkv.");
    EXPECT_EQ(notification.actionTitle, "Show");
    EXPECT_EQ(notification.path, output);
    EXPECT_TRUE(exists(source));
    job->remove();
    EXPECT_TRUE(exists(output));
    EXPECT_THAT(platform.alerts.shown, IsEmpty());
}

TEST_F(JobTest, AFailureLeavesNoOutput) {
    controller.settings.autoRemove = controller.settings.autoClean = true;
    startAndWrite();
    controller.told.clear();
    child().exit(1, "strange");
    EXPECT_EQ(job->state(), State::Failed);
    EXPECT_TRUE(job->finishedError());
    EXPECT_EQ(job->progress(), 100);
    EXPECT_FALSE(exists(output) || exists(progressFile));
    EXPECT_TRUE(exists(source));
    EXPECT_THAT(controller.told, ElementsAre("startNextJobInQueue", "conversionEnded"));
    EXPECT_THAT(platform.alerts.shown, IsEmpty()) << "explained when the user asks";
    ASSERT_EQ(platform.notifications.delivered.size(), 1);
    EXPECT_EQ(platform.notifications.delivered[0].text,
              "Reelvane has failed to convert the file movie.mkv.");
    EXPECT_FALSE(platform.notifications.delivered[0].actionTitle);
}

TEST_F(JobTest, AFullDiskIsToldAtOnceEvenIfTheJobGoesMeanwhile) {
    startAndWrite();
    platform.alerts.whileOpen = [this] { job.reset(); };
    child().exit(1, "No space left on device");
    EXPECT_THAT(lastAlert(), HasSubstr("not enough free space left on the destination volume"));
    EXPECT_EQ(platform.notifications.delivered.size(), 1);
    EXPECT_EQ(controller.told.back(), "conversionEnded");
}

TEST_F(JobTest, CleanAndRemoveHappenBeforeTheNextJob) {
    controller.settings.autoClean = controller.settings.autoRemove = true;
    startAndWrite();
    controller.told.clear();
    controller.onTold = [this](const std::string& what) {
        // The queue lets the job go in a later turn of the loop; the next one starts here.
        if (what == "startNextJobInQueue") controller.converting = 1;
    };
    child().exit(0);
    EXPECT_THAT(controller.told,
                ElementsAre("removeJob", "startNextJobInQueue", "conversionEnded"));
    EXPECT_THAT(platform.workspace.recycled, ElementsAre(source));
    EXPECT_FALSE(child().terminated);
    EXPECT_TRUE(exists(output));
}

TEST_F(JobTest, TheSourceCanBeDeletedForGood) {
    controller.settings.autoRemove = true;
    controller.settings.autoRemoveType = 1;
    startAndWrite();
    child().exit(0);
    EXPECT_FALSE(exists(source));
    EXPECT_THAT(platform.workspace.recycled, IsEmpty());
}

TEST_F(JobTest, QuitsWhenNothingConvertsAndNothingFailed) {
    controller.settings.quitAfterConversion = true;
    const struct {
        int converting, failed;
        bool quits;
    } rows[] = {{0, 0, true}, {1, 0, false}, {0, 1, false}};
    for (const auto& row : rows) {
        job->start();
        controller.converting = row.converting;
        controller.failed = row.failed;
        controller.told.clear();
        child().exit(0);
        EXPECT_EQ(controller.told.back() == "terminate", row.quits);
    }
}

TEST_F(JobTest, RemovingARunningJobEndsItWithoutAWord) {
    platform.folderAccess.open.insert(platform.folder.path());
    startAndWrite();
    controller.told.clear();
    job->remove();
    EXPECT_TRUE(child().terminated);
    EXPECT_EQ(child().listener, nullptr);
    EXPECT_FALSE(exists(output) || exists(progressFile));
    EXPECT_TRUE(exists(source));
    EXPECT_THAT(platform.folderAccess.open, IsEmpty());
    EXPECT_THAT(controller.told, ElementsAre("removeJob", "startNextJobInQueue"));
    EXPECT_THAT(platform.notifications.delivered, IsEmpty());
}

TEST_F(JobTest, RevealShowsTheFileOrExplains) {
    job->reveal();
    platform.workspace.shift = true;
    job->reveal();
    EXPECT_THAT(platform.workspace.revealed, ElementsAre(output, source));
    job->start();
    child().exit(1, "strange");
    platform.alerts.answers = {{.button = kSecondButton}, {.button = kFirstButton}};
    job->reveal();
    EXPECT_THAT(platform.workspace.urls, IsEmpty());
    job->reveal();
    EXPECT_THAT(platform.alerts.shown.back().buttons, ElementsAre("Send to support", "Cancel"));
    EXPECT_THAT(platform.workspace.urls, ElementsAre(HasSubstr("Details:%20-fix_sub_duration")));
    controller.settings.disableBuiltinSubtitles = false;
    job->fileInfo().subtitleTrackIDs = {2};
    job->fileInfo().subtitleFileURL = "/movie.srt";
    job->reveal();
    EXPECT_THAT(lastAlert(), HasSubstr("subtitles embedded into the movie"));
    EXPECT_THAT(platform.alerts.shown.back().buttons, ElementsAre("OK"));
}

}  // namespace
}  // namespace reelvane
