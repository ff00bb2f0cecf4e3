// What happens where the system gives the program less than it is used to.

#include <csignal>
#include <gmock/gmock.h>

#include "tests/cli/cli_fixture.h"

namespace reelvane {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Limits = CliTest;

TEST_F(Limits, ClosedStandardDescriptorsAreNeverTakenByOthers) {
    for (const auto* const closed : {"<&-", ">&-", "2>&-", "<&- >&- 2>&-"}) {
        movie("a.mkv", "!print a warning\n");
        EXPECT_EQ(cliIn(std::string(R"(exec "$@" )") + closed, {"convert", "a.mkv"}).status, 0)
            << closed;
        EXPECT_TRUE(std::filesystem::remove(path("a.m4v"))) << closed;
    }
}

TEST_F(Limits, AFullDeviceEndsInOneSentence) {
    movie("a.mkv", "!progress 1000000\n!hang\n");
    const auto script = R"("$@" >/dev/full 2>stderr; echo $? >status)";
    for (const auto& words : std::vector<std::vector<std::string>>{{"convert", "a.mkv"},
                                                                   {"convert", "--json", "a.mkv"},
                                                                   {"inspect", "a.mkv"},
                                                                   {"preferences", "list"},
                                                                   {"--help"}}) {
        static_cast<void>(cliIn(script, words));
        EXPECT_EQ(content("status"), "1\n") << words.front();
        EXPECT_THAT(errors(),
                    StartsWith("Standard output can't be written (No space left on device)"));
        EXPECT_EQ(std::ranges::count(errors(), '\n'), 1) << errors();
        EXPECT_FALSE(std::filesystem::exists(path("a.m4v")));
        EXPECT_FALSE(hasProgressFiles());
    }
}

TEST_F(Limits, AFileSizeLimitIsAFailureThatIsExplained) {
    movie("a.mkv");
    const auto outcome = cliIn(R"(ulimit -f 0; exec "$@" 2>&1)", {"convert", "a.mkv"});
    EXPECT_EQ(outcome.status, 1) << "and not the signal";
    EXPECT_THAT(outcome.output, HasSubstr("a.mkv: refused: "));
    EXPECT_FALSE(std::filesystem::exists(path("a.m4v")));
}

// A thread whose stack finds no room is refused as one beyond the limit of processes is, and that
// limit does not bind every user.
TEST_F(Limits, WithoutThreadsThereIsASentenceAndWithOneTheWorkIsDone) {
    movie("a.mkv");
    const auto none =
        cliIn(R"(ulimit -s 4000000; ulimit -v 2000000; exec "$@" 2>stderr)", {"convert", "a.mkv"});
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(errors(), StartsWith("The system gives this user no more processes and threads"));
    const auto one =
        cliIn(R"(ulimit -s 1000000; ulimit -v 1800000; exec "$@" 2>stderr)", {"convert", "a.mkv"});
    EXPECT_EQ(one.status, 0) << errors();
    EXPECT_TRUE(std::filesystem::exists(path("a.m4v")));
}

TEST_F(Limits, TooFewDescriptorsAreNamed) {
    movie("a.mkv");
    for (const auto* const limit : {"16", "30"}) {
        const auto few = cliIn(std::string("ulimit -n ") + limit + R"(; exec "$@" 2>stderr)",
                               {"convert", "a.mkv"});
        EXPECT_EQ(few.status, 1) << limit;
        EXPECT_THAT(errors(), StartsWith("The system lets this program open too few files"));
    }
}

TEST_F(Limits, AFloodedLogStaysInBounds) {
    movie("a.mkv",
          "!print begin of the log\n!spam 30000000\n!print Operation timed out\n!spam "
          "30000000\n!exit 1\n");
    const auto outcome = cli({"convert", "--json", "a.mkv"});
    EXPECT_EQ(outcome.status, 1) << errors();
    const auto failed = objects(outcome.output).back();
    ASSERT_EQ(failed.at("event"), "failed");
    const auto log = failed.at("log").get<std::string>();
    EXPECT_LT(log.size(), 5'000'000U);
    EXPECT_THAT(log.substr(0, 100), HasSubstr("begin of the log"));
    EXPECT_THAT(log, HasSubstr("bytes were left out"));
    EXPECT_THAT(failed.at("message").get<std::string>(), HasSubstr("Movie conversion failed"))
        << "what was printed in the middle is known";
}

TEST_F(Limits, NothingThatAConverterLeavesBehindStays) {
    movie("a.mkv", "!leave\n");
    EXPECT_EQ(cli({"convert", "a.mkv"}).status, 0) << errors();
    await([this] { return !isUsed(path("a.mkv")); });
}

TEST_F(Limits, AProgramThatIsMovedOrDamagedSaysSoAndIsNotInterrupted) {
    const auto home = std::filesystem::path(REELVANE_CLI).parent_path();
    std::filesystem::create_directories(path("before/bundle"));
    std::filesystem::copy(
        home / "resources", path("before/bundle/resources"),
        std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks);
    std::filesystem::copy_file(REELVANE_CLI, path("before/bundle/reelvane-cli"));
    movie("a.mkv", "!hang\n");
    auto words = command({"convert", "a.mkv"});
    *std::ranges::find(words, std::string(REELVANE_CLI)) =
        path("before/bundle/reelvane-cli").native();
    Child running(words);
    awaitFile(path("a.m4v"));
    std::filesystem::rename(path("before"), path("after"));
    EXPECT_EQ(running.wait().status, 1);
    EXPECT_THAT(errors(), HasSubstr("has been moved"));
    EXPECT_THAT(errors(), Not(HasSubstr("Interrupted")));
    EXPECT_FALSE(std::filesystem::exists(path("a.m4v")));

    // What an unpacking program has made of a link.
    folder_.write("before/bundle/Frameworks/a.framework/a");
    std::filesystem::rename(path("after/bundle/resources"), path("before/bundle/resources"));
    std::filesystem::rename(path("after/bundle/reelvane-cli"), path("before/bundle/reelvane-cli"));
    EXPECT_EQ(run(words).status, 1);
    EXPECT_THAT(errors(), HasSubstr("This application is damaged."));
}

}  // namespace
}  // namespace reelvane
