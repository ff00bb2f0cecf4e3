#include <cstdlib>
#include <gmock/gmock.h>

#include "support/strings.h"
#include "tests/conversion/job_fixture.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = ConversionJobState;

TEST_F(JobTest, StartLaunchesTheConverterOnAFileOfItsOwn) {
    job->presetSpeedInfo();
    EXPECT_FALSE(job->fastmode());
    controller.settings.audio.conversionPreset = ConversionPreset::Fast;  // changed since
    start();
    EXPECT_EQ(job->state(), State::Converting);
    EXPECT_TRUE(job->fastmode());
    EXPECT_TRUE(std::filesystem::is_empty(output));
    EXPECT_EQ(child().request.executable, "/bundle/resources/ffmpeg");
    EXPECT_EQ(child().request.arguments, job->arguments());
    EXPECT_THAT(job->arguments(), testing::IsSupersetOf({progressFile.native(), output.native()}));
    EXPECT_THAT(controller.told, ElementsAre("wentOn"));
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
    EXPECT_THAT(controller.told, ElementsAre("sourceMissing"));
    EXPECT_THAT(job->diagnosis().message, HasSubstr("you've removed/renamed the source"));
}

TEST_F(JobTest, ARefusedStartFailsCleanlyAndLetsTheNextJobRun) {
    const std::vector<std::pair<const char*, std::function<void()>>> rows = {
        {"The audio handling chosen for ac3 audio is not valid (7). Please choose another",
         [this] {
             controller.settings.audio = {.conversionPreset = ConversionPreset::Custom,
                                          .customAC3Handling = 7};
         }},
        {"ffmpeg", [this] { platform.processLauncher.nextError = LaunchError::NotFound; }},
        {"by its own conversion", [this] { job->fileInfo().destinationURL = source; }}};
    for (const auto& [alert, prepare] : rows) {
        controller.told.clear();
        controller.settings = {};
        platform.processLauncher.nextError = LaunchError::None;
        prepare();
        job->start();
        platform.dispatcher.runPending();
        EXPECT_EQ(job->state(), State::Failed);
        EXPECT_THAT(lastAlert(), HasSubstr(alert));
        EXPECT_EQ(job->diagnosis().message, lastAlert());
        EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
        EXPECT_FALSE(exists(output) || exists(progressFile)) << alert;
        EXPECT_THAT(controller.told, ElementsAre("startRefused"));
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

TEST_F(JobTest, CopiedAACIsTriedFirstWhereTheConverterNeedsThat) {
    std::string version;
    platform.processLauncher.answer = [&version](const ProcessRequest& request) {
        return FinishedProcess{.output = request.arguments.front() == "-version"
                                             ? "ffmpeg version " + version + " Copyright"
                                             : "use the bitstream filter 'aac_adtstoasc'"};
    };
    const std::vector<std::pair<const char*, bool>> rows = {
        {"5.1.9-0+deb12u1", false}, {"4.0", false}, {"n7.1", false}, {"N-1-g2", false},
        {"3.4.11-0ubuntu", true},   {"n2.8", true}, {"", true}};
    for (const auto& [text, tried] : rows) {
        SCOPED_TRACE(text);
        version = text;
        controller.version =
            std::make_shared<ConverterVersion>(platform.processLauncher, "/bundle/ffmpeg");
        record.audioTrackInformation = {audioTrack("#1: eng (aac)", 48000)};
        setUpJob();
        start();
        EXPECT_THAT(job->arguments(), testing::Contains("-absf").Times(tried ? 1 : 0));
        auto& runs = platform.processLauncher.runs;
        ASSERT_EQ(runs.size(), tried ? 2 : 1);
        if (tried) {
            const auto words = Fennimar::joined(runs.back().arguments, " ");
            EXPECT_THAT(words, testing::StartsWith("-i " + source.native() +
                                                   " -stats -t 1 -map 0:0"
                                                   " -map 0:1 -vcodec copy -acodec copy -f mp4"));
            EXPECT_THAT(words, testing::Not(HasSubstr(output.native())));
            EXPECT_FALSE(runs.back().stop.stop_requested());
            platform.dispatcher.advance(std::chrono::seconds(10));
            EXPECT_TRUE(runs.back().stop.stop_requested());
        }
        runs.clear();
    }
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
    setUpJob();
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
    child().print("sec");
    child().print("ond\xFF\r\n");
    EXPECT_EQ(job->log().searched(), "firstsecond\xFF");
    EXPECT_EQ(job->log().shown(), "first\nsecond\xFF\n");
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

/// What may come between the end of a run and the answer of reading its output back.
TEST_F(JobTest, ARunMayEndInAnyMomentOfAPause) {
    using Steps = std::vector<std::function<void()>>;
    const auto pause = [this] { job->pause(); };
    const auto goOn = [this] { job->continueJob(); };
    const auto remove = [this] { job->remove(); };
    const auto end = [this] { writeWhole(), child().exit(0); };
    const auto fail = [this] { child().exit(1); };
    struct Row {
        const char* what;
        Steps steps;
        State state;
        bool outputStays;
    };
    const std::vector<Row> rows = {
        {"ends while paused", {pause, end}, State::Finished, true},
        {"goes on while it is read back", {pause, end, goOn}, State::Finished, true},
        {"goes on and is paused again", {pause, end, goOn, pause, goOn}, State::Finished, true},
        {"is paused while it is read back", {end, pause, goOn}, State::Finished, true},
        {"fails while paused", {pause, fail, goOn}, State::Failed, false},
        {"is removed while paused", {pause, remove}, State::Paused, false},
        {"is removed when it went on", {pause, goOn, remove}, State::Converting, false},
        {"is removed while it is read back", {end, remove}, State::Converting, false},
        {"ends while paused and is removed", {pause, end, remove}, State::Paused, false},
        {"goes on and is removed", {pause, end, goOn, remove}, State::Converting, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        setUpJob();
        start();
        for (const auto& step : row.steps) step();
        platform.dispatcher.runPending();
        EXPECT_EQ(job->state(), row.state);
        EXPECT_EQ(exists(output), row.outputStays);
        EXPECT_FALSE(exists(progressFile));
        EXPECT_THAT(platform.powerAssertions.held,
                    testing::SizeIs(row.state == State::Converting && child().terminated ? 1 : 0));
        std::filesystem::remove(output);
        platform.powerAssertions.held.clear();
    }
}

}  // namespace
}  // namespace reelvane
