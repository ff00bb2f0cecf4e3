#include <cmath>
#include <gmock/gmock.h>
#include <limits>

#include "support/strings.h"
#include "tests/conversion/job_fixture.h"

namespace reelvane {
namespace {

using std::chrono_literals::operator""s;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = ConversionJobState;

TEST_F(JobTest, StartLaunchesTheConverterOnAClearedPlace) {
    platform.folder.write("movie.m4v", "of another day");
    job->presetSpeedInfo();
    EXPECT_FALSE(job->fastmode());
    controller.settings.audio.conversionPreset = 1;  // changed since
    job->start();
    EXPECT_EQ(job->state(), State::Converting);
    EXPECT_TRUE(job->fastmode());
    EXPECT_FALSE(exists(output));
    EXPECT_TRUE(exists(progressFile));
    EXPECT_EQ(child().request.executable, "/bundle/resources/ffmpeg");
    EXPECT_EQ(child().request.arguments, job->arguments());
    EXPECT_EQ(job->arguments().back(), output);
    EXPECT_THAT(job->arguments(), testing::Contains(progressFile.native()));
    EXPECT_THAT(controller.told, ElementsAre("pauseContinueClicked"));
    EXPECT_THAT(platform.powerAssertions.names, ElementsAre("Converting MKV file."));
    EXPECT_THAT(platform.processLauncher.runs, IsEmpty()) << "no trial for AC-3";
}

TEST_F(JobTest, AFolderAtTheOutputPathStays) {
    std::filesystem::create_directory(output);
    job->start();
    job->remove();
    EXPECT_TRUE(exists(output));
}

TEST_F(JobTest, AVanishedInputFailsAndStaysAwake) {
    platform.folder.write("target");
    std::filesystem::remove(source);
    std::filesystem::create_symlink(platform.folder.path() / "gone", source);
    job->start();
    EXPECT_EQ(job->state(), State::Failed);
    EXPECT_TRUE(job->finishedError());
    EXPECT_EQ(lastAlert(),
              "It seems you've removed the file movie.mkv or unmounted it's volume so "
              "conversion can't proceed.");
    EXPECT_EQ(platform.powerAssertions.held.size(), 1);
    EXPECT_THAT(controller.told, IsEmpty());
    EXPECT_THAT(job->diagnosis().message, HasSubstr("you've removed/renamed the source"));
    EXPECT_FALSE(exists(progressFile));
}

TEST_F(JobTest, TooLittleSpaceLeavesTheJobQueued) {
    job->fileInfo().fileSize = std::numeric_limits<std::uint64_t>::max();
    job->start();
    job->start();
    EXPECT_EQ(job->state(), State::Queued);
    EXPECT_EQ(lastAlert(), "There is not enough free space on your target disk for conversion.");
    EXPECT_EQ(platform.powerAssertions.held.size(), 1);
    EXPECT_THAT(platform.processLauncher.children, IsEmpty());
    EXPECT_FALSE(exists(progressFile));
    job->fileInfo().audioTrackInformation.clear();
    job->start();
    EXPECT_EQ(job->state(), State::Converting) << "a movie without sound is not checked";
}

TEST_F(JobTest, ARefusedStartFailsCleanlyAndLetsTheNextJobRun) {
    const struct {
        const char* alert;
        std::function<void()> prepare;
    } rows[] = {
        {"The audio handling chosen for ac3 audio is not valid (7). Please choose another one in "
         "the preferences.",
         [this] { controller.settings.audio = {.conversionPreset = 2, .customAC3Handling = 7}; }},
        {"ffmpeg",
         [this] {
             controller.settings.audio = {};
             platform.processLauncher.nextError = LaunchError::NotFound;
         }},
        {"replaced by its own conversion", [this] { job->fileInfo().destinationURL = source; }},
    };
    for (const auto& row : rows) {
        row.prepare();
        job->start();
        EXPECT_EQ(job->state(), State::Failed) << row.alert;
        EXPECT_THAT(lastAlert(), HasSubstr(row.alert));
        EXPECT_EQ(job->diagnosis().message, lastAlert());
        EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
        EXPECT_FALSE(exists(output) || exists(progressFile)) << row.alert;
        EXPECT_TRUE(exists(source));
        EXPECT_THAT(controller.told, IsEmpty()) << "not inside the call";
        platform.dispatcher.runPending();
        EXPECT_THAT(controller.told, ElementsAre("startNextJobInQueue"));
        controller.told.clear();
    }
    job->remove();
    EXPECT_TRUE(exists(source)) << "its output path is the source";
}

TEST_F(JobTest, CopiedAACIsTriedFirst) {
    job->fileInfo().audioTrackInformation = {{"#1: eng (aac)", 48000}};
    platform.processLauncher.answer = [](const ProcessRequest&) {
        return FinishedProcess{.output = "use the bitstream filter 'aac_adtstoasc' to fix it"};
    };
    job->start();
    ASSERT_EQ(platform.processLauncher.runs.size(), 1);
    EXPECT_EQ(Fennimar::joined(platform.processLauncher.runs[0].arguments, " "),
              "-i " + source.native() +
                  " -stats -t 1 -map 0:0 -map 0:1 -vcodec copy -acodec copy "
                  "-y " +
                  output.native());
    EXPECT_THAT(job->arguments(), testing::Contains("-absf"));
}

TEST_F(JobTest, FollowsTheRun) {
    int changes = 0;
    const auto subscription = job->observe([&changes] { ++changes; });
    job->start();
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(std::isnan(job->remainingSeconds()));
    platform.dispatcher.advance(60s);
    EXPECT_EQ(job->progress(), 0);
    platform.folder.write("Documents/movie.mkv.log", "out_time_ms=50000000\n");
    platform.dispatcher.advance(1s);
    EXPECT_EQ(job->progress(), 50);
    EXPECT_EQ(changes, 2) << "only a tick with a new position";
    EXPECT_EQ(job->stateInfoString(), "Status: Converting   Audio:  eng (ac3)   ETA: 1m 1s");
    child().print("frame=1 bitrate=1\rfirst\n");
    child().print("second\xFF\n");
    EXPECT_EQ(job->jobOutput(), "firstsecond\xFF");
}

TEST_F(JobTest, PauseHoldsTheProcessAndLetsTheMachineSleep) {
    job->start();
    platform.dispatcher.advance(10s);
    job->pause();
    EXPECT_EQ(job->state(), State::Paused);
    EXPECT_TRUE(child().suspended);
    EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
    platform.folder.write("Documents/movie.mkv.log", "out_time_ms=50000000\n");
    platform.dispatcher.advance(5s);
    EXPECT_EQ(job->progress(), 0);
    job->continueJob();
    EXPECT_EQ(job->state(), State::Converting);
    EXPECT_FALSE(child().suspended);
    EXPECT_EQ(platform.powerAssertions.held.size(), 1);
    platform.dispatcher.advance(1s);
    EXPECT_EQ(job->progress(), 50);
    EXPECT_EQ(job->remainingSeconds(), 16) << "the pause counts as elapsed";
    EXPECT_THAT(controller.told, ElementsAre("pauseContinueClicked", "pauseContinueClicked"));
}

}  // namespace
}  // namespace reelvane
