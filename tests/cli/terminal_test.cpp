// The live line, on a terminal of the test's own.

#include <array>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "cli/console.h"
#include "support/posix_io.h"
#include "support/strings.h"
#include "tests/cli/cli_fixture.h"

namespace reelvane {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// A command on a pseudo-terminal of so many columns, and what it has sent there so far.
class OnTerminal {
public:
    OnTerminal(const std::vector<std::string>& words, unsigned short columns) {
        std::vector<char*> arguments;
        for (const auto& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        const winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        int master = -1;
        process_ = ::forkpty(&master, nullptr, nullptr, &size);
        if (process_ == 0) {
            ::execvp(arguments[0], arguments.data());
            ::_exit(127);
        }
        terminal_.reset(master);
    }
    OnTerminal(const OnTerminal&) = delete;
    OnTerminal& operator=(const OnTerminal&) = delete;
    OnTerminal(OnTerminal&&) = delete;
    OnTerminal& operator=(OnTerminal&&) = delete;
    ~OnTerminal() {
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

    /// Reads until the text has come; false when it ends, or nothing comes for ten seconds.
    bool readUntil(std::string_view text) {
        while (sent.find(text) == std::string::npos) {
            if (!readMore()) return false;
        }
        return true;
    }
    /// The text that a key sends.
    void type(std::string_view keys) const {
        ASSERT_EQ(::write(terminal_.get(), keys.data(), keys.size()),
                  static_cast<ssize_t>(keys.size()));
    }
    int wait() {
        while (readMore()) {
        }
        int status = 0;
        ::waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    std::string sent;

private:
    bool readMore() {
        pollfd ready{.fd = terminal_.get(), .events = POLLIN, .revents = 0};
        if (::poll(&ready, 1, 10'000) <= 0) return false;
        std::array<char, 4096> piece{};
        const auto count = ::read(terminal_.get(), piece.data(), piece.size());
        if (count <= 0) return false;
        sent.append(piece.data(), static_cast<std::size_t>(count));
        return true;
    }

    pid_t process_ = -1;
    FileDescriptor terminal_;
};

/// What a person would see of each state of the live line: without colours.
std::vector<std::string> liveLines(std::string sent) {
    for (const auto* const colour : {"\x1b[32m", "\x1b[2m", "\x1b[0m"}) {
        sent = Fennimar::replaced(sent, colour, "");
    }
    std::vector<std::string> lines;
    for (const auto part : Fennimar::split(sent, "\r\x1b[K")) {
        lines.emplace_back(Fennimar::partBefore(part, "\r\n"));
    }
    return lines;
}

class LiveLine : public CliTest {
protected:
    std::vector<std::string> convert(const std::string& variable) {
        environment_.insert(environment_.end(), {"TERM=xterm", "LC_ALL=C.UTF-8", variable});
        return command({"convert", kName});
    }
    static constexpr auto kName = "A long name of \u202E\x1b[2J a movie 第一話.mkv";
};

TEST_F(LiveLine, TheLiveLineStaysWithinItsLineAndGoesAtTheEnd) {
    for (const auto columns : std::to_array<unsigned short>({200, 60, 30, 12})) {
        movie(kName, "!bytes 100\n!await " + path("go").native() + "\n");
        OnTerminal run(convert("NO_COLOR="), columns);
        // Half of the bytes are written, and no time is reported.
        EXPECT_TRUE(run.readUntil("%")) << run.sent;
        folder_.write("go");
        EXPECT_EQ(run.wait(), 0) << run.sent;
        const auto lines = liveLines(run.sent);
        ASSERT_GT(lines.size(), 2U) << run.sent;
        for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
            EXPECT_LT(displayWidth(lines[i]), columns) << lines[i];
        }
        EXPECT_THAT(lines.back(), HasSubstr("verified")) << "the live line made room";
        EXPECT_THAT(run.sent, AllOf(Not(HasSubstr("\x1b[2J")), Not(HasSubstr("\u202E"))));
        EXPECT_THAT(run.sent, HasSubstr(columns > 30 ? "\x1b[32m" : "%"));
        std::filesystem::remove(path("go"));
    }
}

TEST_F(LiveLine, ProgressComesFromBytesWhereNoTimeIsReported) {
    movie(kName, "!await " + path("go").native() + "\n");
    const auto size = std::filesystem::file_size(path(kName)) + std::string("!bytes 9999\n").size();
    movie(kName, "!bytes " + std::to_string(size / 2) + "\n!await " + path("go").native() + "\n");
    OnTerminal run(convert("NO_COLOR=1"), 100);
    EXPECT_TRUE(run.readUntil(" 50%") || run.readUntil(" 49%")) << run.sent;
    EXPECT_THAT(run.sent, Not(HasSubstr("\x1b[32m"))) << "NO_COLOR";
    folder_.write("go");
    EXPECT_EQ(run.wait(), 0);
}

TEST_F(LiveLine, ControlCEndsTheRunAndTheLiveLine) {
    movie(kName, "!hang\n");
    OnTerminal run(convert("NO_COLOR="), 80);
    EXPECT_TRUE(run.readUntil("0%"));
    run.type("\x03");
    EXPECT_EQ(run.wait(), 130);
    EXPECT_THAT(run.sent, EndsWith("\x1b[K"));
    EXPECT_THAT(errors(), HasSubstr("Interrupted"));
    EXPECT_FALSE(hasProgressFiles());
}

TEST_F(LiveLine, ADumbTerminalGetsPlainLines) {
    movie(kName);
    OnTerminal run(convert("TERM=dumb"), 80);
    EXPECT_EQ(run.wait(), 0);
    EXPECT_THAT(run.sent, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace reelvane
