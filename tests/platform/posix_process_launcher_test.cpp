#include "platform/posix_process_launcher.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <poll.h>
#include <stop_token>
#include <string>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/glib_dispatcher.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

ProcessRequest shell(const std::string& script) {
    return {.executable = "/bin/sh", .arguments = {"-c", script}};
}

FinishedProcess finishedRun(const ProcessRequest& request) {
    return PosixProcessLauncher().run(request).finished.value_or(FinishedProcess{"not run", -1});
}

bool isGone(pid_t process) {
    return ::kill(process, 0) < 0 && errno == ESRCH;
}

/// Runs the main loop until the child ends or the test says so.
class LaunchedChild final : public ProcessListener {
public:
    explicit LaunchedChild(const ProcessRequest& request)
        : child(PosixProcessLauncher().launch(request, *this).child) {}
    void outputReceived(std::string_view bytes) override {
        output += bytes;
        if (onOutput) onOutput();
    }
    void taskFinished(int exitStatus, std::string_view remainingOutput) override {
        output += remainingOutput;
        status = exitStatus;
        child.reset();
        dispatcher.quit();
    }

    GlibDispatcher dispatcher;
    std::string output;
    std::optional<int> status;
    std::function<void()> onOutput;
    std::unique_ptr<ChildProcess> child;
};

TEST(PosixProcessLauncher, ArgumentsArriveByteForByteAndTheStatusComesBack) {
    const auto printed =
        finishedRun({.executable = "/usr/bin/printf", .arguments = {"%s|%s|", "a\xFF b", ""}});
    EXPECT_EQ(printed.output, "a\xFF b||");
    const auto failed = finishedRun(shell("cat; echo out; echo err >&2; exit 3"));
    EXPECT_EQ(failed.output, "out\nerr\n");
    EXPECT_EQ(failed.exitStatus, 3);
}

TEST(PosixProcessLauncher, AFloodIsReadToItsEndAndARunKeepsTheBeginAndTheEndOfIt) {
    const auto request = shell("echo begin; head -c 8388608 /dev/zero; echo end; exit 5");
    const auto kept = finishedRun(request);
    EXPECT_EQ(kept.exitStatus, 5);
    EXPECT_TRUE(kept.output.starts_with("begin\n") && kept.output.ends_with("end\n"));
    EXPECT_NE(kept.output.find(" bytes were left out here]"), std::string::npos);
    EXPECT_LT(kept.output.size(), 5U << 20U);
    LaunchedChild launched(request);
    launched.dispatcher.run();
    EXPECT_EQ(launched.output.size(), (8U << 20U) + 10);
    EXPECT_EQ(launched.status, 5);
}

TEST(PosixProcessLauncher, AFailedStartSaysWhy) {
    const TemporaryFolder folder;
    const auto plain = folder.write("plain", "echo no");
    const std::string tooLong(200'000, 'x');
    const std::vector<std::pair<ProcessRequest, LaunchError>> cases = {
        {{.executable = folder.path() / "none"}, LaunchError::NotFound},
        {{.executable = plain}, LaunchError::NotExecutable},
        {{.executable = folder.path()}, LaunchError::NotExecutable},
        {{.executable = "/bin/echo", .arguments = {tooLong}}, LaunchError::ArgumentsTooLong},
    };
    for (const auto& [request, error] : cases) {
        EXPECT_EQ(PosixProcessLauncher().run(request).error, error) << request.executable;
    }
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a failed start leaves a process behind";
}

TEST(PosixProcessLauncher, AGrandchildThatHoldsThePipeDelaysNothingAndEndsWithTheChild) {
    const auto request = shell("sleep 60 & echo $!; exit 6");
    const auto finished = finishedRun(request);
    LaunchedChild launched(request);
    launched.dispatcher.run();
    EXPECT_EQ(launched.status, 6);
    for (const auto& output : {finished.output, launched.output}) {
        const auto grandchild = ::syscall(SYS_pidfd_open, std::stoi(output), 0);
        if (grandchild < 0) continue;  // it is gone already
        pollfd end{.fd = static_cast<int>(grandchild), .events = POLLIN, .revents = 0};
        EXPECT_EQ(::poll(&end, 1, 30'000), 1) << output << "stays behind";
        ::close(end.fd);
    }
}

TEST(PosixProcessLauncher, TerminateEndsASuspendedChildAndWhatItStarted) {
    LaunchedChild launched(shell("sleep 60 & printf '%s\\n%s\\n' $! $$; wait"));
    launched.onOutput = [&] {
        if (launched.output.ends_with('\n')) launched.dispatcher.quit();
    };
    launched.dispatcher.run();
    const auto process = std::stoi(launched.output.substr(launched.output.find('\n')));
    const auto grandchild = ::syscall(SYS_pidfd_open, std::stoi(launched.output), 0);
    launched.child->suspend();
    launched.child->terminate();
    EXPECT_TRUE(isGone(process));
    EXPECT_FALSE(launched.status);
    pollfd end{.fd = static_cast<int>(grandchild), .events = POLLIN, .revents = 0};
    EXPECT_EQ(::poll(&end, 1, 30'000), 1);
    ::close(end.fd);
}

TEST(PosixProcessLauncher, ABackgroundChildGivesWayAndOthersDoNot) {
    auto request = shell("nice; ionice");
    const auto ordinary = finishedRun(request).output;
    request.background = true;
    EXPECT_EQ(finishedRun(request).output, "19\nidle\n");
    EXPECT_EQ(ordinary, finishedRun(shell("nice; ionice -p " + std::to_string(::getpid()))).output);
}

TEST(PosixProcessLauncher, AStoppedRunEndsItsChildAndOneThatBeginsLaterDoesSoAtOnce) {
    const TemporaryFolder folder;
    const auto started = folder.path() / "started";
    std::stop_source stop;
    auto request = shell("echo $$; : > " + started.native() + "; exec sleep 60");
    request.stop = stop.get_token();
    const std::jthread stopper([&](const std::stop_token& testEnds) {
        while (!std::filesystem::exists(started) && !testEnds.stop_requested()) {
            std::this_thread::yield();
        }
        stop.request_stop();
    });
    const auto finished = finishedRun(request);
    EXPECT_NE(finished.exitStatus, 0);
    EXPECT_TRUE(isGone(std::stoi(finished.output)));
    EXPECT_EQ(finishedRun(request).output, "");
}

TEST(PosixProcessLauncher, AListenerMayDestroyTheChildWhenToldOfOutput) {
    LaunchedChild launched(shell("echo $$; exec sleep 60"));
    launched.onOutput = [&] {
        launched.child.reset();
        launched.dispatcher.quit();
    };
    launched.dispatcher.run();
    EXPECT_TRUE(isGone(std::stoi(launched.output)));
    EXPECT_FALSE(launched.status);
}

TEST(PosixProcessLauncher, AChildDiesWithItsKilledParent) {
    std::array<int, 2> lifeline{};
    ASSERT_EQ(::pipe(lifeline.data()), 0);
    const pid_t parent = ::fork();
    if (parent == 0) {
        // The child's argument opens the pipe anew: its end closes when the child is gone.
        const auto line =
            "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(lifeline[1]);
        static_cast<void>(
            PosixProcessLauncher().run(shell("exec 9>" + line + "; echo up >&9; exec sleep 60")));
        ::_exit(1);
    }
    ::close(lifeline[1]);
    std::array<char, 3> up{};
    EXPECT_EQ(::read(lifeline[0], up.data(), up.size()), 3);
    ::kill(parent, SIGKILL);
    ::waitpid(parent, nullptr, 0);
    EXPECT_EQ(::read(lifeline[0], up.data(), up.size()), 0);
    ::close(lifeline[0]);
}

}  // namespace
}  // namespace reelvane
