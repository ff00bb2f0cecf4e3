#include "platform/dbus_power_assertions.h"

#include <array>
#include <chrono>
#include <gio/gunixsocketaddress.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <thread>
#include <unistd.h>

#include "support/file_descriptor.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/platform/private_bus.h"
#include "tests/platform/recording_log.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto kGnome = "org.gnome.SessionManager";
constexpr auto kPowerManagement = "org.freedesktop.PowerManagement";
constexpr auto kLogin = "org.freedesktop.login1";

bool inhibits(GDBusMessage* call) {
    return g_str_equal(g_dbus_message_get_member(call), "Inhibit") != FALSE;
}

MockService::Answer cookie(guint32 number) {
    return [number](GDBusMessage* call) {
        return MockService::reply(call, inhibits(call) ? g_variant_new("(u)", number) : nullptr);
    };
}

/// Leaves the requests without an answer.
GDBusMessage* hesitate(GDBusMessage* call) {
    return inhibits(call) ? nullptr : MockService::reply(call);
}

struct Power : testing::Test {
    PrivateBus bus;
    RecordingLog log;
    std::optional<MockService> gnome;
    std::optional<DBusPowerAssertions> power{std::in_place, log, "Reelvane"};
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
    power->release(held);
    power->release(held);
    power->release(held + 1);
    EXPECT_EQ(bus.nextCall(), "UnInhibit(8,)");
    power.reset();
    EXPECT_TRUE(bus.hasNoMoreCalls());
    EXPECT_THAT(log.messages(), ElementsAre());
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
    EXPECT_EQ(::read(reading.get(), &byte, 1), 0);  // comes when the last writer has closed
}

TEST_F(Power, AnAnswerAfterTheReleaseOrTheEndGivesBackWhatArrives) {
    gnome.emplace(bus, kGnome, &hesitate);
    const auto id = power->create("why");
    EXPECT_THAT(bus.nextCall(), HasSubstr("Inhibit("));
    power->release(id);
    gnome->answerHeld(g_variant_new("(u)", 5U));
    EXPECT_EQ(bus.nextCall(), "Uninhibit(5,)");
    static_cast<void>(power->create("why"));
    EXPECT_THAT(bus.nextCall(), HasSubstr("Inhibit("));
    std::thread answering([&] { gnome->answerHeld(g_variant_new("(u)", 6U)); });
    power.reset();
    answering.join();
    EXPECT_EQ(bus.nextCall(), "Uninhibit(6,)");
}

TEST_F(Power, WhatIsHeldIsGivenBackAtTheEndEvenIfARequestHangs) {
    MockService second(bus, kPowerManagement, cookie(8));
    static_cast<void>(power->create("first"));
    EXPECT_EQ(bus.nextCall(), "Inhibit('Reelvane', 'first')");
    gnome.emplace(bus, kGnome, &hesitate);
    static_cast<void>(power->create("second"));
    EXPECT_EQ(bus.nextCall(), "Inhibit('Reelvane', 0, 'second', 4)");
    power.reset();
    EXPECT_EQ(bus.nextCall(), "UnInhibit(8,)");
    EXPECT_THAT(log.messages(), ElementsAre());
}

TEST_F(Power, NoServiceIsLoggedOnceAndIdentifiersAreGiven) {
    const auto first = power->create("one");
    EXPECT_NE(first, kNoPowerAssertion);
    EXPECT_NE(power->create("two"), first);
    power.reset();
    EXPECT_THAT(log.messages(), ElementsAre(HasSubstr("keeps the machine awake")));
}

TEST_F(Power, ABusThatNeverAnswersDoesNotHoldUpTheEnd) {
    const TemporaryFolder folder;
    const auto path = (folder.path() / "bus").native();
    const GObjectHandle<GSocketAddress> address(g_unix_socket_address_new(path.c_str()));
    const GObjectHandle<GSocketListener> listener(g_socket_listener_new());
    ASSERT_TRUE(g_socket_listener_add_address(listener.get(), address.get(), G_SOCKET_TYPE_STREAM,
                                              G_SOCKET_PROTOCOL_DEFAULT, nullptr, nullptr,
                                              nullptr));
    PrivateBus::useAddress("unix:path=" + path);
    static_cast<void>(power->create("why"));
    const auto start = std::chrono::steady_clock::now();
    power.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace reelvane
