#include "media/probe.h"

#include <fstream>
#include <gmock/gmock.h>
#include <stdexcept>
#include <sys/stat.h>

#include "support/strings.h"
#include "tests/fakes/fake_process_launcher.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

/// A folder with a movie in it, and an ffmpeg that prints `report`, or a
/// trace when asked for one.
class Probe : public testing::Test {
protected:
    Probe() {
        launcher_.answer = [this](const ProcessRequest& request) {
            const bool traces = request.arguments[0] != "-tag";
            return FinishedProcess{.output = traces ? "max_num_ref_frames 00111 = 6" : report_};
        };
    }
    [[nodiscard]] Inspection inspect(const fs::path& file, bool sandboxed = false) {
        return initWithURL(file, {}, {&launcher_, "/bin/ffmpeg", "Reelvane", sandboxed});
    }

    TemporaryFolder folder_;
    FakeProcessLauncher launcher_;
    fs::path movie_ = folder_.write("a.mkv");
    std::string report_ = "Input #0\n  Stream #0:2: Video: h264, 1920x1080, 25 fps\n";
};

TEST_F(Probe, FillsTheRecordAndCountsReferenceFramesByASecondRun) {
    const auto notUtf8 = folder_.write("a\xff.mkv", "12345");
    report_ += "Input #0, x, from '" + notUtf8.native() + "'";
    const auto [record, alerts, problem] = inspect(notUtf8);
    EXPECT_EQ(record.value().fileURL, notUtf8);
    EXPECT_EQ(record->fileSize, 5);
    EXPECT_EQ(record->referenceFrames, 6);
    EXPECT_EQ(alerts.at(0).key, "warningtoomanyrefframes");
    ASSERT_EQ(launcher_.runs.size(), 2);
    const auto trace = launcher_.runs[1];
    EXPECT_THAT(launcher_.runs[0].arguments,
                ElementsAre("-tag", testing::StartsWith("0x"), "-i", notUtf8.native()));
    EXPECT_TRUE(inspect(notUtf8).record);
    EXPECT_NE(launcher_.runs[0].arguments[1], launcher_.runs[2].arguments[1]);
    EXPECT_THAT(trace.arguments,
                ElementsAre("-i", notUtf8.native(), "-map", "0:2", "-c", "copy", "-frames:v", "1",
                            "-bsf:v", "trace_headers", "-f", "null", "-"));
    for (const std::string line :
         {"h264, 720x576", "h264, 1920x1080, |refs: 3|", "hevc, 1920x1080", "h264, none", "vp9"}) {
        launcher_.runs.clear();
        report_ = "Input #0\n  Stream #0:0: Video: " + line;
        (void)inspect(movie_);
        EXPECT_EQ(launcher_.runs.size(), 1) << "needless for " << line;
    }
}

TEST_F(Probe, FollowsLinksOnlyToFilesAndOnlyOutsideASandbox) {
    const auto link = folder_.path() / "link";
    const auto dangling = folder_.path() / "dangling";
    const auto fifo = folder_.path() / "fifo";
    fs::create_symlink(movie_, link);
    fs::create_symlink("nowhere", dangling);
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(inspect(link).record.value().fileURL, link);
    launcher_.runs.clear();
    EXPECT_EQ(inspect(link, true).alerts.at(0).key, "warningalias");
    EXPECT_EQ(
        inspect(dangling).alerts.at(0).message,
        R"(The file 'dangling' is an alias. We can't open the target of the alias because of limitations in Apple's 'sandbox'. Please complaint to Apple if you want Aliases to work in sandboxed apps.)");
    for (const fs::path& path : {fifo, folder_.path(), folder_.path() / "gone"}) {
        EXPECT_EQ(inspect(path).alerts.at(0).title, "Reelvane") << path;
    }
    EXPECT_TRUE(launcher_.runs.empty());
}

TEST_F(Probe, ThePlayTimeAloneTakesOneRun) {
    report_ = "Input #0\n  Duration: 00:01:02.90, start: 0.0\n";
    const ProbeTools tools{.launcher = &launcher_, .ffmpeg = "/bin/ffmpeg"};
    EXPECT_EQ(durationOfFile(movie_, tools), 62);
    EXPECT_EQ(durationOfFile(folder_.path(), tools), -1);
    EXPECT_EQ(launcher_.runs.size(), 1) << "a folder is not probed";
}

// ffmpeg prints no more than 1023 bytes of a message.
TEST_F(Probe, ReadsPastANameWhateverItSays) {
    const std::string tail = "  Duration: 00:01:00.00, start: 0\n  Stream #0:0: Video: h264, 4x3\n";
    fs::path deep = folder_.path();
    for (int i = 0; i < 5; ++i) deep /= std::string(220, 'd');
    fs::create_directories(deep);
    std::ofstream(deep / "long.mkv") << "x";
    for (const auto& movie :
         {folder_.write("a\nInput #0, hls, from 'x':\n  Stream #0:0: Video: vp9.mkv"),
          folder_.write("a\x01\xff.mkv"), deep / "long.mkv"}) {
        const auto printed = Fennimar::replaced(movie.native(), "\x01", "?");
        report_ = ("Input #0, x, from '" + printed + "':\n").substr(0, 1023) + tail;
        EXPECT_EQ(inspect(movie).record.value().runtimeSeconds, 60) << movie;
        report_ = "ffmpeg version 5.1\n" + printed + ": Invalid data found";
        EXPECT_THAT(inspect(movie).alerts.at(0).message, testing::HasSubstr("valid MKV"));
    }
}

TEST_F(Probe, CountsPacketsWhereSeveralStreamsCouldBeThePicture) {
    report_ =
        "Input #0\n  Duration: 00:01:00.00, start: 0\n  Stream #0:1: Video: h264, 4x3\n"
        "  Stream #0:4: Video: h264, 4x3\n";
    launcher_.answer = [this](const ProcessRequest& request) {
        const bool counts = request.arguments[0] != "-tag";
        const bool isLater = counts && request.arguments[2] == "-ss";
        return FinishedProcess{.output = isLater  ? "0, 0\n0, 1\n"
                                         : counts ? "0, 0\n1, 1\n"
                                                  : report_};
    };
    EXPECT_EQ(inspect(movie_).record.value().videoTrackID, 1);
    EXPECT_THAT(launcher_.runs.at(1).arguments,
                ElementsAre("-v", "quiet", "-i", movie_.native(), "-map", "0:1", "-map", "0:4",
                            "-c", "copy", "-copyinkf", "-copypriorss", "0", "-frames:v", "250",
                            "-f", "framecrc", "-"));
    EXPECT_THAT(launcher_.runs.at(2).arguments[3], "30");
    EXPECT_EQ(launcher_.runs.size(), 3) << "no longer in doubt";
}

TEST_F(Probe, AFileThatCannotBeInspectedIsRefusedAlone) {
    launcher_.answer = [](const ProcessRequest&) -> FinishedProcess {
        throw std::length_error("too long");
    };
    EXPECT_EQ(inspect(movie_).alerts.size(), 1);
}

TEST_F(Probe, TellsATroubledToolFromABadFile) {
    report_ = "ffmpeg version 5.1\na.mkv: Invalid data found when processing input";
    EXPECT_EQ(inspect(movie_).alerts.size(), 1);
    launcher_.answer = [this](const ProcessRequest& request) {
        const bool asksVersion = request.arguments.front() == "-version";
        return FinishedProcess{.output = asksVersion ? report_ : "a.mkv: Invalid data found"};
    };
    EXPECT_EQ(inspect(movie_).alerts.size(), 1) << "a wrapper without a banner";
    report_ = "Segmentation fault";
    EXPECT_EQ(inspect(movie_).toolProblem, ProbeToolProblem::Broken);
    EXPECT_TRUE(inspect(movie_).alerts.empty());
    launcher_.nextError = LaunchError::NotFound;
    EXPECT_EQ(inspect(movie_).toolProblem, ProbeToolProblem::Missing);
}

}  // namespace
}  // namespace reelvane
