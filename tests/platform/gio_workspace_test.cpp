#include "platform/gio_workspace.h"

#include <array>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/file_descriptor.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/platform/private_bus.h"
#include "tests/platform/recording_log.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A desktop of the test's own: home, Trash, and one program that handles folders and links.
/// GLib looks these up once, so all tests share them.
struct Desktop {
    Desktop() {
        ::setenv("HOME", folder.path().c_str(), 1);
        ::setenv("XDG_DATA_HOME", data.c_str(), 1);
        const auto script = folder.write("handler", "#!/bin/sh\necho \"$1\" >\"${0%/*}/opened\"\n");
        std::filesystem::permissions(script, std::filesystem::perms::owner_all);
        folder.write("data/applications/handler.desktop",
                     "[Desktop Entry]\nType=Application\nName=Handler\nExec=" + script.native() +
                         " %u\nMimeType=inode/directory;x-scheme-handler/reelvane-test;\n");
        folder.write("data/applications/mimeapps.list",
                     "[Default Applications]\ninode/directory=handler.desktop\n"
                     "x-scheme-handler/reelvane-test=handler.desktop\n");
        ::mkfifo((folder.path() / "opened").c_str(), 0600);
        opened = FileDescriptor(::open((folder.path() / "opened").c_str(), O_RDWR | O_CLOEXEC));
    }

    /// What the handler was started with; waits for it.
    [[nodiscard]] std::string nextOpened() const {
        pollfd waiting{.fd = opened.get(), .events = POLLIN, .revents = 0};
        if (::poll(&waiting, 1, 10'000) != 1) return "none";
        std::array<char, 4096> text{};
        const auto length = ::read(opened.get(), text.data(), text.size());
        return {text.data(), static_cast<std::size_t>(length)};
    }

    TemporaryFolder folder;
    std::filesystem::path data = folder.path() / "data";
    FileDescriptor opened;
};

struct GioWorkspaceTest : testing::Test {
    static void SetUpTestSuite() {
        if (!desktop) desktop.emplace();
    }

    static inline std::optional<Desktop> desktop;
    PrivateBus bus;
    RecordingLog log;
    std::optional<GioWorkspace> workspace{std::in_place, log};
};

TEST_F(GioWorkspaceTest, LinksOpenWithTheDefaultHandler) {
    workspace->openURL("reelvane-test:x?subject=a%20%26b");
    EXPECT_EQ(desktop->nextOpened(), "reelvane-test:x?subject=a%20%26b\n");
    workspace->openURL("nobody-handles-this:x");
    workspace.reset();
    EXPECT_THAT(log.messages(), ElementsAre(HasSubstr("nobody-handles-this:x")));
}

TEST_F(GioWorkspaceTest, RevealSelectsTheFileOrOpensItsFolder) {
    const auto file = desktop->folder.write("d #1/a% \xff.mkv");
    const auto folder = file.parent_path().native();
    const auto uri = "file://" + desktop->folder.path().native() + "/d%20%231/a%25%20%FF.mkv";
    workspace->reveal(file);  // no file manager on the bus
    EXPECT_EQ(desktop->nextOpened(), folder + "\n");

    MockService fileManager(bus, "org.freedesktop.FileManager1",
                            [](GDBusMessage* call) { return MockService::reply(call); });
    workspace->reveal(file);
    workspace->reveal("relative.mkv");
    workspace.reset();
    EXPECT_EQ(bus.nextCall(), "ShowItems(['" + uri + "'], '')");
    EXPECT_TRUE(bus.hasNoMoreCalls());
    EXPECT_THAT(log.messages(), ElementsAre(HasSubstr("relative.mkv")));
}

TEST_F(GioWorkspaceTest, RecycleMovesToTheTrashAndNeverDeletes) {
    const auto file = desktop->folder.write("a % \xff.mkv", "movie");
    workspace->recycle(file);
    workspace->recycle("/proc/self/status");
    workspace.reset();
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_TRUE(std::filesystem::exists(desktop->data / "Trash/files/a % \xff.mkv"));
    EXPECT_TRUE(std::filesystem::exists("/proc/self/status"));
    EXPECT_THAT(log.messages(), ElementsAre(HasSubstr("/proc/self/status")));
}

}  // namespace
}  // namespace reelvane
