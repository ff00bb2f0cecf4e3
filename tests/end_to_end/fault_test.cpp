#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/mount.h>
#include <vector>

#include "tests/end_to_end/media_facts.h"
#include "tests/end_to_end/movies.h"
#include "tests/end_to_end/sandbox.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

/// A conversion of a slow movie that has begun to write its output and has been remembered.
class RunningConversion {
public:
    RunningConversion()
        : child_((sandbox.slowDown(), sandbox.command({"convert", "--to", sandbox.out().native(),
                                                       movie("long.mkv").native()}))) {
        writing = eventually([this] {
            std::error_code absent;
            const auto size = fs::file_size(output(), absent);
            return !absent && size > 0 && sandbox.processes() > 1 &&
                   contentOf(preferences()).find("UnfinishedOutput") != std::string::npos;
        });
    }
    [[nodiscard]] fs::path output() const { return sandbox.out() / "long.m4v"; }
    [[nodiscard]] fs::path preferences() const {
        return sandbox.root() / "home/.config/org.reelvane.Reelvane/org.reelvane.Reelvane.ini";
    }
    [[nodiscard]] Outcome endWith(int signal) {
        child_.send(signal);
        return child_.wait();
    }

    Sandbox sandbox;
    bool writing = false;

private:
    Child child_;
};

class Interrupted : public testing::TestWithParam<int> {};

TEST_P(Interrupted, EndsFfmpegAndLeavesNothing) {
    RunningConversion running;
    ASSERT_TRUE(running.writing);
    EXPECT_EQ(running.endWith(GetParam()).status, 128 + GetParam());
    EXPECT_EQ(running.sandbox.processes(), 0);
    EXPECT_THAT(running.sandbox.leftovers(), IsEmpty());
}
INSTANTIATE_TEST_SUITE_P(Signals, Interrupted, testing::Values(SIGHUP, SIGINT, SIGTERM));

TEST(Killed, TakesFfmpegAlongAndTheNextStartClearsUp) {
    RunningConversion running;
    ASSERT_TRUE(running.writing);
    EXPECT_EQ(running.endWith(SIGKILL).status, 128 + SIGKILL);
    EXPECT_TRUE(eventually([&] { return running.sandbox.processes() == 0; }));

    const auto outcome = running.sandbox.convert(movie("silent.mkv"));
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(running.sandbox.leftovers(), ElementsAre("silent.m4v"));
}

TEST(Vanished, QueuedMovieFailsAndTheOtherIsConverted) {
    Sandbox sandbox;
    sandbox.slowDown();
    const auto first = sandbox.root() / "first.mkv";
    const auto second = sandbox.root() / "second.mkv";
    for (const auto& file : {first, second}) fs::copy_file(movie("ac3-51.mkv"), file);
    Child child(sandbox.command({"convert", "--to", sandbox.out().native(), first, second}));
    const auto started = [&](const char* name) { return fs::exists(sandbox.out() / name); };
    ASSERT_TRUE(eventually([&] { return started("first.m4v") || started("second.m4v"); }));
    // Which of the two waits is the queue's business.
    const bool firstRuns = started("first.m4v");
    fs::remove(firstRuns ? second : first);

    const auto outcome = child.wait();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("It seems you've removed the file " +
                                          std::string(firstRuns ? "second.mkv" : "first.mkv")));
    EXPECT_THAT(sandbox.leftovers(), ElementsAre(firstRuns ? "first.m4v" : "second.m4v"));
}

TEST(Truncated, ShorterMovieIsKeptAndTheUserIsTold) {
    const Sandbox sandbox;
    const auto broken = sandbox.root() / "broken.mkv";
    fs::copy_file(movie("long.mkv"), broken);
    fs::resize_file(broken, fs::file_size(broken) / 2);
    const auto outcome = sandbox.convert(broken, {"--set", "AutoRemove=1"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.output, HasSubstr("the source may be damaged."));
    EXPECT_THAT(sandbox.leftovers(), ElementsAre("broken.m4v"));
    EXPECT_TRUE(fs::exists(broken));
}

/// These run in a mount namespace of their own, which the test's registration makes.
class NeedsMount : public testing::Test {
protected:
    void mountOut(const std::string& options, unsigned long flags = 0) {
        ASSERT_EQ(::mount("tmpfs", sandbox_.out().c_str(), "tmpfs", flags, options.c_str()), 0)
            << "run me in a mount namespace";
    }
    void TearDown() override { ::umount(sandbox_.out().c_str()); }

    Sandbox sandbox_;
};

TEST_F(NeedsMount, DiskThatFillsInMidRunIsExplained) {
    // The input fits, so that the conversion starts; the additional AAC track does not.
    const auto source = movie("long.mkv");
    mountOut("size=" + std::to_string(fs::file_size(source) + 65536));
    const auto outcome = sandbox_.convert(source);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("there is not enough free space left on the destination "
                                          "volume."));
    EXPECT_THAT(sandbox_.leftovers(), IsEmpty());
}

TEST_F(NeedsMount, DiskThatIsTooSmallIsRefusedAtTheStart) {
    mountOut("size=65536");
    const auto outcome = sandbox_.convert(movie("ac3-51.mkv"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output,
                HasSubstr("There is not enough free space on your target disk for conversion."));
    EXPECT_THAT(sandbox_.leftovers(), IsEmpty());
}

TEST_F(NeedsMount, ReadOnlyFolderIsRefused) {
    mountOut("", MS_RDONLY);
    const auto outcome = sandbox_.convert(movie("ac3-51.mkv"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("You don't seem to have write access to the selected "
                                          "destinatation or it is a read-only filesystem."));
}

}  // namespace
}  // namespace reelvane
