#include <gmock/gmock.h>

#include "tests/conversion/job_fixture.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = ConversionJobState;

TEST_F(JobTest, ASuccessKeepsTheOutputAndAnnouncesIt) {
    startAndWrite();
    platform.dispatcher.advance(std::chrono::seconds(5));
    finish("frame=1 bitrate=1");
    EXPECT_EQ(job->progress(), 100);
    EXPECT_EQ(job->jobOutput(), "frame=1 bitrate=1") << "the rest of the pipe is not filtered";
    EXPECT_THAT(controller.told, ElementsAre("startNextJobInQueue", "conversionEnded"));
    EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
    platform.dispatcher.advance(std::chrono::seconds(60));
    EXPECT_EQ(job->stateInfoString(), "Status: Finished [Conversion took: 5s]");
    const auto& notification = platform.notifications.delivered.at(0);
    EXPECT_EQ(notification.title, "Reelvane Conversion Finished");
    EXPECT_EQ(notification.text, "Reelvane has finished converting the file movie.mkv.");
    EXPECT_EQ(notification.actionTitle, "Show");
    EXPECT_EQ(notification.path, output);
    job->remove();
    EXPECT_TRUE(exists(output) && exists(source) && !exists(progressFile));
}

TEST_F(JobTest, AFailureLeavesNoOutput) {
    controller.settings.autoRemove = controller.settings.autoClean = true;
    startAndWrite();
    child().exit(1, "strange");
    EXPECT_EQ(job->state(), State::Failed);
    EXPECT_TRUE(exists(source) && !exists(output) && !exists(progressFile));
    EXPECT_THAT(controller.told, ElementsAre("startNextJobInQueue", "conversionEnded"));
    EXPECT_THAT(platform.alerts.shown, IsEmpty()) << "explained when the user asks";
    EXPECT_EQ(platform.notifications.delivered.at(0).text,
              "Reelvane has failed to convert the file movie.mkv.");
    EXPECT_FALSE(platform.notifications.delivered[0].actionTitle);
}

TEST_F(JobTest, AFullDiskIsToldAtOnceEvenIfTheJobGoesMeanwhile) {
    startAndWrite();
    platform.alerts.whileOpen = [this] { job.reset(); };
    child().exit(1, "No space left on device");
    EXPECT_THAT(lastAlert(), HasSubstr("not enough free space left on the destination volume"));
    EXPECT_THAT(controller.told, ElementsAre("startNextJobInQueue", "conversionEnded"));
}

TEST_F(JobTest, CleanAndRemoveHappenBeforeTheNextJob) {
    controller.settings.autoClean = controller.settings.autoRemove = true;
    startAndWrite();
    controller.onTold = [this](const std::string& what) {
        if (what == "startNextJobInQueue") controller.converting = 1;
    };
    finish();
    EXPECT_THAT(controller.told,
                ElementsAre("removeJob", "startNextJobInQueue", "conversionEnded"));
    EXPECT_THAT(platform.workspace.recycled, ElementsAre(source));
    EXPECT_TRUE(exists(output) && !child().terminated);
}

TEST_F(JobTest, ASourceIsDeletedForGoodOnlyWhereTheUserSaidSo) {
    controller.settings.autoRemove = true;
    controller.settings.autoRemoveType = 1;
    startAndWrite();
    child().exit(1);
    EXPECT_TRUE(exists(source));
    startAndWrite();
    finish();
    EXPECT_TRUE(!exists(source) && exists(output) && platform.workspace.recycled.empty());
}

TEST_F(JobTest, AnExitStatusOfZeroIsNotYetSuccess) {
    controller.settings.autoRemove = true;
    const std::vector<std::pair<const char*, std::function<void()>>> rows = {
        {"is incomplete, so it was not kept", [this] { exitWell(); }},
        {"is incomplete", [this] { finish("av_interleaved: Error writing trailer"); }},
        {"not enough free space", [this] { finish("x: No space left on device"); }},
        {"is incomplete", [this] {
             SmallMp4 movie;
             movie.tracks.resize(1);  // of the two that were mapped
             platform.folder.write("movie.m4v", movie.bytes());
             exitWell();
         }}};
    for (const auto& [reason, end] : rows) {
        startAndWrite();
        end();
        EXPECT_EQ(job->state(), State::Failed) << reason;
        EXPECT_THAT(job->diagnosis().message, HasSubstr(reason));
        EXPECT_TRUE(exists(source) && !exists(output)) << reason;
        EXPECT_THAT(platform.workspace.recycled, IsEmpty());
        EXPECT_EQ(job->details(), "");
    }
}

TEST_F(JobTest, AShortOutputIsKeptAndSoIsItsSource) {
    controller.settings.autoRemove = true;
    job->fileInfo().runtimeSeconds = 125;
    startAndWrite();
    finish();
    EXPECT_EQ(job->state(), State::Finished);
    EXPECT_THAT(job->details(), HasSubstr("1m 40s, 2 tracks, "));
    EXPECT_EQ(platform.notifications.delivered.at(0).text,
              "movie.mkv ended after 1m 40s of 2m 5s: the source may be damaged.");
    EXPECT_TRUE(exists(source) && exists(output) && platform.workspace.recycled.empty());
}

TEST_F(JobTest, RemovingARunningJobEndsItWithoutAWord) {
    platform.folderAccess.open.insert(platform.folder.path());
    startAndWrite();
    job->remove();
    EXPECT_TRUE(child().terminated);
    EXPECT_EQ(child().listener, nullptr);
    EXPECT_TRUE(exists(source) && !exists(output) && !exists(progressFile));
    EXPECT_THAT(platform.folderAccess.open, IsEmpty());
    EXPECT_THAT(controller.told, ElementsAre("removeJob", "startNextJobInQueue"));
    std::filesystem::create_directory(output);
    job->remove();
    EXPECT_TRUE(exists(output)) << "a folder is never deleted";
}

}  // namespace
}  // namespace reelvane
