#include "platform/dbus_power_assertions.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <unistd.h>

#include "support/posix_io.h"
#include "tests/fakes/fake_platform.h"
#include "tests/platform/private_bus.h"

namespace reelvane {
namespace {

using testing::HasSubstr;

constexpr auto kGnome = "org.gnome.SessionManager";
constexpr auto kPowerManagement = "org.freedesktop.PowerManagement";
constexpr auto kLogin = "org.freedesktop.login1";

MockService::Answer cookie(guint32 number) {
    return [number](GDBusMessage* call) {
        const bool inhibits = g_str_equal(g_dbus_message_get_member(call), "Inhibit") != FALSE;
        return MockService::reply(call, inhibits ? g_variant_new("(u)", number) : nullptr);
    };
}

struct Power : testing::Test {
    PrivateBus bus;
    FakeSystemLog log;
    std::optional<MockService> gnome;
    DBusConnections buses;
    std::optional<DBusPowerAssertions> power{std::in_place, log, buses, "Reelvane"};
};

TEST_F(Power, TheFirstServiceThatAnswersIsAskedAndGivenBack) {
    MockService last(bus, kLogin, &MockService::refuse);
    MockService second(bus, kPowerManagement, cookie(8));
    gnome.emplace(bus, kGnome, cookie(7));
    power->release(power->create("Converting 2 files"));
    EXPECT_EQ(bus.nextCall(), "Inhibit('Reelvane', 0, 'Converting 2 files', 4)");
    EXPECT_EQ(bus.nextCall(), "Uninhibit(7,)");

    gnome.emplace(bus, kGnome, &MockService::refuse);
    const auto held = power->create("bad \xff name");
    EXPECT_THAT(bus.nextCall(), HasSubstr(", 4)"));
    EXPECT_EQ(bus.nextCall(), "Inhibit('Reelvane', 'bad \xEF\xBF\xBD name')");
    power->release(held + 1);
    power.reset();
    EXPECT_EQ(bus.nextCall(), "UnInhibit(8,)");
    EXPECT_EQ(log.written.size(), 0U);
}

TEST_F(Power, TheLoginManagersDescriptorIsHeldUntilTheRelease) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const FileDescriptor reading(ends[0]);
    MockService login(bus, kLogin, [&ends](GDBusMessage* call) {
        auto* const message = MockService::reply(call, g_variant_new("(h)", 0));
        const GObjectHandle<GUnixFDList> list(g_unix_fd_list_new_from_array(&ends[1], 1));
        g_dbus_message_set_unix_fd_list(message, list.get());
        return message;
    });
    const auto held = power->create("why");
    EXPECT_EQ(bus.nextCall(), "Inhibit('idle', 'Reelvane', 'why', 'block')");
    power->release(held);
    char byte = 0;
    const auto read = [&] { return ::read(reading.get(), &byte, 1); };
    EXPECT_EQ(whileServing(read), 0);  // comes when the last writer has closed
}

}  // namespace
}  // namespace reelvane
