#include <gmock/gmock.h>

#include "tests/cli/cli_fixture.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Convert = CliTest;

TEST_F(Convert, TellsEveryStepAsAnEvent) {
    movie("a.mkv");
    folder_.write("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nHi\n");
    const auto outcome = cli({"convert", "--json", "./a.mkv", "a.srt"});
    EXPECT_EQ(outcome.status, 0) << errors();
    EXPECT_THAT(eventNames(outcome.output),
                ElementsAre("queued", "started", "progress", "finished"));
    const auto finished = objects(outcome.output).back();
    EXPECT_EQ(finished.at("file"), "./a.mkv");
    EXPECT_EQ(finished.at("output"), path("a.m4v").native());
    EXPECT_EQ(finished.at("bytes"), std::filesystem::file_size(path("a.m4v")));
    EXPECT_THAT(outcome.output, HasSubstr("a.srt"));
    EXPECT_FALSE(hasProgressFiles());
}

TEST_F(Convert, TellsWhatIsPassedOver) {
    movie("a.mkv");
    folder_.write("b.txt");
    folder_.write("z.srt", "1\n00:00:01,000 --> 00:00:02,000\nHi\n");
    const auto outcome = cli({"convert", "--json", "--set", "QuitAfterConversion=1", "none",
                              "b.txt", "none.mkv", "z.srt", "a.mkv"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(eventNames(outcome.output),
                ElementsAre("refused", "refused", "refused", "refused", "queued", "started",
                            "progress", "finished"));
    EXPECT_EQ(cli({"convert", "z.srt"}).status, 1);
    EXPECT_THAT(errors(), HasSubstr("belongs to none of the movies"));
}

TEST_F(Convert, SearchesAFolderForItsMovies) {
    for (const auto* const name : {"tv/Show 10.mkv", "tv/Show 2.mkv", "tv/s1/e1.mkv"}) movie(name);
    for (const auto* const name : {"tv/Show 2.srt", "tv/other.srt"}) {
        folder_.write(name, "1\n00:00:01,000 --> 00:00:02,000\nHi\n");
    }
    folder_.write("tv/notes.txt");
    std::filesystem::create_directories(path("empty"));
    const auto outcome = cli({"convert", "--json", "./tv", "tv/s1/e1.mkv"});
    EXPECT_EQ(outcome.status, 0) << errors();
    std::vector<std::string> queued;
    for (const auto& event : objects(outcome.output)) {
        if (event.at("event") == "queued") queued.push_back(event.at("file"));
    }
    EXPECT_THAT(queued, ElementsAre("./tv/Show 2.mkv", "./tv/Show 10.mkv", "tv/s1/e1.mkv"));
    EXPECT_THAT(outcome.output, HasSubstr("'./tv/other.srt' belongs to none of the movies"));
    EXPECT_THAT(outcome.output, HasSubstr(path("tv/Show 2.srt").native()));
    EXPECT_EQ(cli({"convert", "empty", "tv/s1"}).status, 1);
    EXPECT_THAT(errors(), HasSubstr("empty: refused: There is no movie in the folder 'empty'."));
    EXPECT_EQ(cli({"convert", "--subtitle", "tv/other.srt", "tv"}).status, 2);
    EXPECT_THAT(errors(), StartsWith("The option '--subtitle' is for one movie only."));
}

TEST_F(Convert, GoesOnAfterAFailureAndARefusal) {
    movie("a.mkv");
    movie("b.mkv", "!spam 200000\n!print Operation timed out\n!exit 1\n");
    movie("c.mkv");
    folder_.write("d.mkv", "  Stream #0:0: Video: wmv3, 320x240\n");
    const auto outcome = cli({"convert", "a.mkv", "b.mkv", "c.mkv", "d.mkv"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(std::filesystem::exists(path("a.m4v")));
    EXPECT_FALSE(std::filesystem::exists(path("b.m4v")));
    EXPECT_TRUE(std::filesystem::exists(path("c.m4v")));
    EXPECT_THAT(outcome.output, HasSubstr("2 files converted, 1 failed, 1 refused"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("\r")));
    EXPECT_THAT(outcome.output, Not(HasSubstr("\x1b")));
    EXPECT_THAT(errors(), HasSubstr("b.mkv: failed: Movie conversion failed"));
    EXPECT_THAT(errors(), HasSubstr("d.mkv: refused: "));
    EXPECT_THAT(errors(), Not(HasSubstr("Reelvane: "))) << "what a refusal says is told once";
    EXPECT_FALSE(hasProgressFiles());
}

TEST_F(Convert, ASourceThatVanishedDoesNotHoldUpTheOthers) {
    movie("a.mkv");
    movie("gone.mkv");
    movie("z.mkv", "!await " + path("go").native() + "\n");
    // The last file starts first; the others wait, and one of them goes.
    Child running(command({"convert", "--json", "a.mkv", "gone.mkv", "z.mkv"}));
    awaitFile(path("z.m4v"));
    std::filesystem::remove(path("gone.mkv"));
    folder_.write("go");
    const auto outcome = running.wait();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(std::filesystem::exists(path("a.m4v"))) << outcome.output << errors();
    EXPECT_EQ(std::ranges::count(eventNames(outcome.output), "failed"), 1);
    EXPECT_EQ(std::ranges::count(eventNames(outcome.output), "alert"), 1) << "it names the file";
}

TEST_F(Convert, MoviesThatFindNoRoomMakeWayForTheOthers) {
    const auto room = std::filesystem::space(folder_.path()).available;
    for (const auto* const name : {"big.mkv", "huge.mkv"}) {
        movie(name, "!end\n");
        std::filesystem::resize_file(path(name), room + (1U << 30U));
    }
    movie("a.mkv");
    const auto outcome = cli({"convert", "--json", "a.mkv", "big.mkv", "huge.mkv"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(std::filesystem::exists(path("a.m4v"))) << outcome.output << errors();
    const auto names = eventNames(outcome.output);
    EXPECT_EQ(std::ranges::count(names, "failed"), 2);
    EXPECT_EQ(std::ranges::count(names, "alert"), 0) << outcome.output;
    EXPECT_FALSE(hasProgressFiles());
}

TEST_F(Convert, QuietSaysNothingOfSuccess) {
    movie("a.mkv");
    const auto outcome = cli({"convert", "--quiet", "a.mkv"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output + errors(), "");
}

TEST_F(Convert, SignalsLeaveNothingUnfinishedBehind) {
    movie("a.mkv", "!hang\n");
    movie("b.mkv", "!hang\n");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Child running(command({"convert", "--json", "a.mkv", "b.mkv"}));
        awaitFile(path("b.m4v"));
        running.send(signal);
        running.send(signal);  // somebody impatient
        const auto outcome = running.wait();
        EXPECT_EQ(outcome.status, 128 + signal);
        auto names = eventNames(outcome.output);
        std::erase(names, "progress");  // there may have been time for none
        EXPECT_THAT(names, ElementsAre("queued", "queued", "started", "interrupted"));
        EXPECT_EQ(objects(outcome.output).back().at("file"), "b.mkv");
        EXPECT_FALSE(std::filesystem::exists(path("a.m4v")));
        EXPECT_FALSE(std::filesystem::exists(path("b.m4v")));
        EXPECT_FALSE(hasProgressFiles());
        EXPECT_FALSE(isUsed(path("b.mkv")));
    }
}

TEST_F(Convert, WarningsOfAMovieThatIsDoneAtOnceAreTold) {
    auto report = std::string(kReport);
    report.replace(report.find("(High)"), 6, "(High 10)");
    folder_.write("a.mkv", report);
    EXPECT_EQ(cli({"convert", "a.mkv"}).status, 0);
    EXPECT_THAT(errors(), HasSubstr("10-bit"));
}

TEST_F(Convert, ATrialThatHangsIsInterruptedToo) {
    movie("a.mkv", "!trialhang\n");
    environment_.emplace_back("FAKE_FFMPEG_VERSION=3.4");  // newer ones are not tried
    for (const int signal : {SIGINT, SIGTERM}) {
        Child running(command({"convert", "--audio", "1", "a.mkv"}));
        awaitFile(path("a.m4v"));
        await([this] { return isUsed(path("a.mkv")); });  // and the probe is over
        running.send(signal);
        EXPECT_EQ(running.wait().status, 128 + signal);
        EXPECT_FALSE(std::filesystem::exists(path("a.m4v")));
        EXPECT_FALSE(hasProgressFiles());
        EXPECT_FALSE(isUsed(path("a.mkv")));
    }
}

TEST_F(Convert, AReaderThatStallsDoesNotHoldUpAnInterruption) {
    movie("a.mkv", "!await " + path("go").native() + "\n!spam 200000\n!exit 1\n");
    Child running(command({"convert", "--json", "a.mkv"}));  // nobody reads before its end
    awaitFile(path("a.m4v"));
    folder_.write("go");
    await([this] { return !std::filesystem::exists(path("a.m4v")); });
    running.send(SIGINT);
    EXPECT_EQ(running.wait().status, 130);
    EXPECT_FALSE(hasProgressFiles());
}

TEST_F(Convert, AProbeThatHangsDoesNotHoldUpAnInterruption) {
    movie("a.mkv", "!probehang\n");
    Child running(command({"convert", "a.mkv"}));
    await([this] { return isUsed(path("a.mkv")); });
    running.send(SIGINT);
    EXPECT_EQ(running.wait().status, 130);
    await([this] { return !isUsed(path("a.mkv")); });
}

TEST_F(Convert, AReaderThatLeftEndsTheRun) {
    movie("a.mkv", "!progress 1000000\n!hang\n");
    const auto outcome =
        cliIn(R"({ "$@" 2>stderr; echo $? >status; } | head -1)", {"convert", "--json", "a.mkv"});
    EXPECT_THAT(eventNames(outcome.output), ElementsAre("queued"));
    EXPECT_EQ(content("status"), "141\n");
    EXPECT_THAT(errors(), StartsWith("Standard output can't be written (Broken pipe)"));
    EXPECT_FALSE(std::filesystem::exists(path("a.m4v")));
    EXPECT_FALSE(hasProgressFiles());
}

TEST_F(Convert, AMissingFfmpegIsToldOnceAndRefusesTheFiles) {
    environment_ = {"REELVANE_FFMPEG=/nowhere/ffmpeg"};
    movie("a.mkv");
    movie("b.mkv");
    EXPECT_EQ(cli({"convert", "a.mkv", "b.mkv"}).status, 1);
    EXPECT_THAT(errors(), StartsWith("a.mkv: refused: The program '/nowhere/ffmpeg'"));
    EXPECT_THAT(errors(), HasSubstr("\nb.mkv: refused for the same reason\n"));
    EXPECT_EQ(std::ranges::count(errors(), '\n'), 2);
    const auto events = eventNames(cli({"convert", "--json", "a.mkv", "b.mkv"}).output);
    EXPECT_THAT(events, ElementsAre("refused", "refused"));
}

TEST_F(Convert, AReportThatIsCutShortEndsNothing) {
    folder_.write("short.mkv", "  Duration: 00:00:12.00\n  Stream #0:0: Video: h264, 320x240\n");
    folder_.write("none.mkv", "  Duration\nStream\n");
    EXPECT_EQ(cli({"convert", "none.mkv", "short.mkv"}).status, 1);
    EXPECT_THAT(errors(), StartsWith("none.mkv: refused: "));
    EXPECT_TRUE(std::filesystem::exists(path("short.m4v"))) << errors();
}

}  // namespace
}  // namespace reelvane
