#include <cstdlib>
#include <gmock/gmock.h>

#include "support/strings.h"
#include "tests/conversion/job_fixture.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = ConversionJobState;

TEST_F(JobTest, StartLaunchesTheConverterOnAClearedPlace) {
    platform.folder.write("movie.m4v", "of another day");
    job->presetSpeedInfo();
    EXPECT_FALSE(job->fastmode());
    controller.settings.audio.conversionPreset = 1;  // changed since
    start();
    EXPECT_EQ(job->state(), State::Converting);
    EXPECT_TRUE(job->fastmode());
    EXPECT_TRUE(std::filesystem::is_empty(output));
    EXPECT_EQ(child().request.executable, "/bundle/resources/ffmpeg");
    EXPECT_EQ(child().request.arguments, job->arguments());
    EXPECT_THAT(job->arguments(), testing::IsSupersetOf({progressFile.native(), output.native()}));
    EXPECT_THAT(controller.told, ElementsAre("pauseContinueClicked"));
    EXPECT_THAT(platform.powerAssertions.names, ElementsAre("Converting MKV file."));
    EXPECT_THAT(platform.processLauncher.runs, IsEmpty()) << "only AAC is tried first";
}

TEST_F(JobTest, AVanishedInputFailsAndStaysAwake) {
    std::filesystem::remove(source);
    std::filesystem::create_symlink(platform.folder.path() / "gone", source);
    start();
    EXPECT_EQ(job->state(), State::Failed);
    EXPECT_EQ(lastAlert(),
              "It seems you've removed the file movie.mkv or unmounted it's volume so "
              "conversion can't proceed.");
    EXPECT_EQ(platform.powerAssertions.held.size(), 1);
    EXPECT_THAT(controller.told, IsEmpty());
    EXPECT_THAT(job->diagnosis().message, HasSubstr("you've removed/renamed the source"));
}

TEST_F(JobTest, ARefusedStartFailsCleanlyAndLetsTheNextJobRun) {
    const std::vector<std::pair<const char*, std::function<void()>>> rows = {
        {"The audio handling chosen for ac3 audio is not valid (7). Please choose another",
         [this] { controller.settings.audio = {.conversionPreset = 2, .customAC3Handling = 7}; }},
        {"ffmpeg", [this] { platform.processLauncher.nextError = LaunchError::NotFound; }},
        {"by its own conversion", [this] { job->fileInfo().destinationURL = source; }}};
    for (const auto& [alert, prepare] : rows) {
        controller = {};
        prepare();
        job->start();
        platform.alerts.whileOpen = [this] {
            EXPECT_THAT(controller.told, IsEmpty()) << "not inside the call";
        };
        platform.dispatcher.runPending();
        EXPECT_EQ(job->state(), State::Failed);
        EXPECT_THAT(lastAlert(), HasSubstr(alert));
        EXPECT_EQ(job->diagnosis().message, lastAlert());
        EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
        EXPECT_FALSE(exists(output) || exists(progressFile)) << alert;
        EXPECT_THAT(controller.told, ElementsAre("startNextJobInQueue"));
    }
    job->remove();
    EXPECT_TRUE(exists(source)) << "though it was named as the output";
}

TEST_F(JobTest, NothingIsStartedWhereNoProgressCanBeWritten) {
    auto& folders = platform.host.userFolders;
    folders.documents = folders.applicationData = "/dev/null/folder";
    ::setenv("TMPDIR", "/dev/null", 1);
    start();
    ::unsetenv("TMPDIR");
    EXPECT_EQ(job->state(), State::Failed);
    EXPECT_THAT(lastAlert(), HasSubstr("neither your documents folder nor"));
    EXPECT_FALSE(exists(output));
    EXPECT_THAT(platform.processLauncher.children, IsEmpty());
}

TEST_F(JobTest, CopiedAACIsTriedFirst) {
    job->fileInfo().audioTrackInformation = {{"#1: eng (aac)", 48000}};
    platform.processLauncher.answer = [](const ProcessRequest&) {
        return FinishedProcess{.output = "use the bitstream filter 'aac_adtstoasc' to fix it"};
    };
    start();
    ASSERT_EQ(platform.processLauncher.runs.size(), 1);
    EXPECT_EQ(Fennimar::joined(platform.processLauncher.runs[0].arguments, " "),
              "-i " + source.native() +
                  " -stats -t 1 -map 0:0 -map 0:1 -vcodec copy -acodec copy "
                  "-y " +
                  output.native());
    EXPECT_THAT(job->arguments(), testing::Contains("-absf"));
}

TEST_F(JobTest, AStartThatNobodyWaitsForLeavesNothingBehind) {
    for (const bool answered : {false, true}) {
        // Before the disks have answered, and when they have but the main loop has not turned
        // since.
        job->start();
        EXPECT_TRUE(job->isStarting());
        if (answered) platform.dispatcher.runBackground();
        EXPECT_EQ(exists(output), answered);
        job->pause();
        EXPECT_FALSE(job->isStarting());
        platform.dispatcher.runPending();
        EXPECT_EQ(job->state(), State::Queued);
        EXPECT_FALSE(exists(output));
        EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
    }
    job->start();
    job->pause();
    start();  // takes up what is under way
    EXPECT_EQ(platform.processLauncher.children.size(), 1);
    EXPECT_TRUE(exists(output));
    job->remove();
    EXPECT_FALSE(exists(output));
    job->start();
    job.reset();
    platform.dispatcher.runPending();
    EXPECT_FALSE(exists(output));
    EXPECT_EQ(platform.processLauncher.children.size(), 1);
}

TEST_F(JobTest, FollowsTheRunButNotThePause) {
    start();
    int changes = 0;
    const auto subscription = job->observe([&changes] { ++changes; });
    child().print("frame=1 bitrate=1\rfirst\n");
    child().print("second\xFF\n");
    EXPECT_EQ(job->jobOutput(), "firstsecond\xFF");
    platform.dispatcher.advance(std::chrono::seconds(60));
    EXPECT_EQ(changes, 0) << "only a new position is a change";
    platform.folder.write("Documents/movie.mkv.log", "out_time_ms=50000000\n");
    job->pause();
    EXPECT_EQ(job->state(), State::Paused);
    EXPECT_TRUE(child().suspended);
    EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
    platform.dispatcher.advance(std::chrono::seconds(5));
    EXPECT_EQ(job->progress(), 0);
    job->continueJob();
    EXPECT_FALSE(child().suspended);
    EXPECT_EQ(platform.powerAssertions.held.size(), 1);
    platform.dispatcher.advance(std::chrono::seconds(1));
    EXPECT_EQ(job->progress(), 50);
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(job->stateInfoString(), "Status: Converting   Audio:  eng (ac3)   ETA: 1m 6s");
}

}  // namespace
}  // namespace reelvane
