#include "platform/dbus_notifications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

#include "platform/glib_dispatcher.h"
#include "support/posix_io.h"
#include "tests/fakes/fake_platform.h"
#include "tests/platform/private_bus.h"

namespace reelvane {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

constexpr auto kName = "org.freedesktop.Notifications";
constexpr auto kPath = "/org/freedesktop/Notifications";

const Notification kFinished{.title = "Finished <1>",
                             .text = "a < b & c > \xff",
                             .actionTitle = "Show",
                             .path = "/movies/a.mp4"};

struct Notifying : testing::Test {
    /// A daemon with these capabilities; it counts its notifications up from 1.
    void startDaemon(const std::vector<const char*>& capabilities) {
        daemon.emplace(bus, kName, [capabilities, id = 0U](GDBusMessage* call) mutable {
            const std::string method = g_dbus_message_get_member(call);
            if (method == "Notify") return MockService::reply(call, g_variant_new("(u)", ++id));
            auto* const words =
                g_variant_new_strv(capabilities.data(), static_cast<gssize>(capabilities.size()));
            return MockService::reply(call, g_variant_new_tuple(&words, 1));
        });
    }
    void click(guint32 id) {
        daemon->emit(kPath, kName, "ActionInvoked", g_variant_new("(us)", id, "default"));
    }

    PrivateBus bus;
    FakeSystemLog log;
    GlibDispatcher dispatcher;
    std::optional<MockService> daemon;
    DBusConnections buses;
    std::optional<DBusNotifications> notifications{std::in_place, log,        dispatcher,
                                                   buses,         "Reelvane", "org.example.App"};
};

TEST_F(Notifying, WhatIsSentFollowsTheCapabilities) {
    const std::vector<std::pair<std::vector<const char*>, std::string>> rows{
        {{"body"}, "[]"}, {{"body", "actions"}, "['default', 'Show', 'show', 'Show']"}};
    for (const auto& [capabilities, actions] : rows) {
        startDaemon(capabilities);
        notifications.emplace(log, dispatcher, buses, "Reelvane", "org.example.App");
        notifications->deliver(kFinished);
        EXPECT_EQ(bus.nextCall(), "GetCapabilities()");
        EXPECT_THAT(bus.nextCall(), HasSubstr("'a &lt; b &amp; c &gt; \xEF\xBF\xBD', " + actions));
    }
}

TEST_F(Notifying, AClickHandsBackTheNotificationUntilItIsClosed) {
    startDaemon({"actions"});
    std::vector<std::string> clicked;
    notifications->setActivation([&](const Notification& notification) {
        clicked.push_back(notification.title + notification.path.value_or("").native());
        dispatcher.quit();
    });
    notifications->deliver(kFinished);
    notifications->deliver({.title = "second", .actionTitle = "Show"});
    EXPECT_EQ(bus.nextCall(), "GetCapabilities()");
    EXPECT_THAT(bus.nextCall(), HasSubstr("'Finished <1>'"));
    EXPECT_THAT(bus.nextCall(), HasSubstr("'second'"));
    click(1);
    dispatcher.run();
    daemon->emit(kPath, kName, "NotificationClosed", g_variant_new("(uu)", 1U, 2U));
    click(1);
    click(2);
    dispatcher.run();
    EXPECT_THAT(clicked, ElementsAre("Finished <1>/movies/a.mp4", "second"));
}

TEST_F(Notifying, NoDaemonIsLoggedOnce) {
    notifications->deliver(kFinished);
    notifications->deliver(kFinished);
    notifications.reset();
    EXPECT_THAT(log.written, ElementsAre(Pair(_, HasSubstr("shows no notifications"))));
}

TEST_F(Notifying, ABusThatNeverAnswersHoldsNobodyUp) {
    const TemporaryFolder folder;
    const auto path = folder.path() / "bus";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    const FileDescriptor silent(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): sockets are named that way
    ASSERT_EQ(::bind(silent.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(silent.get(), 5), 0);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path.native()).c_str(), 1);
    notifications->deliver(kFinished);
    notifications.reset();
    EXPECT_THAT(log.written, ElementsAre(Pair(_, HasSubstr("does not answer"))));
}

}  // namespace
}  // namespace reelvane
