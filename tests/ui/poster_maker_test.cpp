#include "ui/jobs/poster_maker.h"

#include <cstdio>
#include <gtest/gtest.h>

#include "support/make_string.h"
#include "tests/fakes/fake_process_launcher.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

FinishedProcess runForReal(const ProcessRequest& request) {
    const auto line = request.executable.native() + " " + shellQuotedLine(request.arguments);
    // The quoting of odd bytes is that of bash; the plain shell may know less.
    auto* const pipe = ::popen(("bash -c " + shellQuoted(line) + " 2>&1").c_str(), "r");
    FinishedProcess finished;
    for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe)) {
        finished.output += static_cast<char>(byte);
    }
    finished.exitStatus = ::pclose(pipe);
    return finished;
}

TEST(PosterMaker, MakesAPictureOfTheDisplayedShapeThatIsNotTheBlackBefore) {
    const TemporaryFolder folder;
    FakeProcessLauncher launcher;
    launcher.answer = runForReal;
    const PosterTools tools{.launcher = &launcher, .ffmpeg = "ffmpeg", .side = 256};
    const auto movie = folder.path() / "a b\xFF.mkv";
    const auto source = "color=black:s=360x288:d=2[a];testsrc2=s=360x288:d=4[b];[a][b]concat";
    static_cast<void>(runForReal({"ffmpeg",
                                  {"-f", "lavfi", "-i", source, "-vf", "setsar=64/45", "-c:v",
                                   "mpeg4", "-g", "25", movie.native()}}));

    const auto made = makePoster(movie, tools, {});
    EXPECT_EQ(made.picture.size(), QSize(256, 144));
    EXPECT_FALSE(isBlank(made.picture));
    EXPECT_EQ(made.runtimeSeconds, 6);
    for (const auto& run : launcher.runs) EXPECT_TRUE(run.background);
    EXPECT_TRUE(makePoster(folder.write("broken.mkv"), tools, {}).movieHasNone);
}

}  // namespace
}  // namespace reelvane
