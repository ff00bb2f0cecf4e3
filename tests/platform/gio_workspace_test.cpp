#include "platform/gio_workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>

#include "tests/fakes/fake_platform.h"
#include "tests/platform/private_bus.h"

namespace reelvane {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

/// A desktop of the test's own: home, Trash, and one program that opens folders.
/// GLib looks these up once, so all tests share them.
struct Desktop {
    Desktop() {
        ::setenv("HOME", folder.path().c_str(), 1);
        ::setenv("XDG_DATA_HOME", data.c_str(), 1);
        const auto script = folder.write("handler", "#!/bin/sh\necho \"$1\" >\"${0%/*}/opened\"\n");
        std::filesystem::permissions(script, std::filesystem::perms::owner_all);
        folder.write("data/applications/handler.desktop",
                     "[Desktop Entry]\nType=Application\nName=Handler\nExec=" + script.native() +
                         " %u\nMimeType=inode/directory;x-scheme-handler/mailto;\n");
        folder.write("data/applications/mimeapps.list",
                     "[Default Applications]\ninode/directory=handler.desktop\n"
                     "x-scheme-handler/mailto=handler.desktop\n");
        ::mkfifo((folder.path() / "opened").c_str(), 0600);
    }

    /// What the handler was started with; waits for it.
    [[nodiscard]] std::string nextOpened() const {
        return whileServing([this] { return contentOf(folder.path() / "opened"); });
    }

    TemporaryFolder folder;
    std::filesystem::path data = folder.path() / "data";
};

struct GioWorkspaceTest : testing::Test {
    static void SetUpTestSuite() {
        if (!desktop) desktop.emplace();
    }

    static inline std::optional<Desktop> desktop;
    PrivateBus bus;
    FakeSystemLog log;
    DBusConnections buses;
    std::optional<GioWorkspace> workspace{std::in_place, log, buses};
};

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
    EXPECT_THAT(log.written, ElementsAre(Pair(_, HasSubstr("relative.mkv"))));
}

TEST_F(GioWorkspaceTest, RecycleMovesToTheTrashAndNeverDeletes) {
    const auto file = desktop->folder.write("a % \xff.mkv", "movie");
    EXPECT_EQ(workspace->recycle(file), "");
    EXPECT_NE(workspace->recycle("/proc/self/status"), "");
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_TRUE(std::filesystem::exists(desktop->data / "Trash/files/a % \xff.mkv"));
    EXPECT_TRUE(std::filesystem::exists("/proc/self/status"));
}

TEST_F(GioWorkspaceTest, AnswersWhetherALinkWasOpened) {
    std::vector<bool> answers;
    const auto note = [&answers](bool opened) { answers.push_back(opened); };
    const auto mail = "mailto:a@b.c?body=" + std::string(2'000, 'x');
    workspace->openURL(mail, note);
    EXPECT_EQ(desktop->nextOpened(), mail + "\n");
    workspace->openURL(mail + std::string(140'000, 'x'), note);  // no program takes so long a word
    workspace->openURL("nobody:knows", note);
    workspace.reset();
    EXPECT_THAT(answers, ElementsAre(true, false, false));
}

}  // namespace
}  // namespace reelvane
