#include "platform/dbus_power_assertions.h"

#include <array>
#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>
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

MockService::Answer cookie(guint32 number) {
    return [number](GDBusMessage* call) {
        const bool inhibits = g_str_equal(g_dbus_message_get_member(call), "Inhibit") != FALSE;
        return MockService::reply(
            call, inhibits ? g_variant_new("(u)", number) : g_variant_new_tuple(nullptr, 0));
    };
}

/// Holds the reading end of the descriptor that it hands out.
struct Descriptor {
    GDBusMessage* answer(GDBusMessage* call) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        readingEnd = FileDescriptor(ends[0]);
        auto* const message = MockService::reply(call, g_variant_new("(h)", 0));
        const GObjectHandle<GUnixFDList> list(g_unix_fd_list_new_from_array(&ends[1], 1));
        g_dbus_message_set_unix_fd_list(message, list.get());
        return message;
    }
    FileDescriptor readingEnd;
};

struct Power : testing::Test {
    PrivateBus bus;
    RecordingLog log;
    std::optional<DBusPowerAssertions> power{std::in_place, log, "Reelvane"};
};

TEST_F(Power, TheFirstServiceThatAnswersIsAskedAndGivenBack) {
    MockService last(bus, kLogin, &MockService::refuse);
    std::optional<MockService> second(std::in_place, bus, kPowerManagement, cookie(8));
    std::optional<MockService> first(std::in_place, bus, kGnome, cookie(7));
    power->release(power->create("Converting 2 files"));
    EXPECT_EQ(bus.nextCall(), "Inhibit('Reelvane', 0, 'Converting 2 files', 4)");
    EXPECT_EQ(bus.nextCall(), "Uninhibit(7,)");

    first.emplace(bus, kGnome, &MockService::refuse);
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
    Descriptor descriptor;
    MockService login(bus, kLogin, [&](GDBusMessage* call) { return descriptor.answer(call); });
    const auto held = power->create("why");
    EXPECT_EQ(bus.nextCall(), "Inhibit('idle', 'Reelvane', 'why', 'block')");
    power->release(held);
    char byte = 0;
    EXPECT_EQ(::read(descriptor.readingEnd.get(), &byte, 1),
              0);  // comes when the last writer has closed
}

/// Leaves the requests without an answer.
GDBusMessage* hesitate(GDBusMessage* call) {
    const bool inhibits = g_str_equal(g_dbus_message_get_member(call), "Inhibit") != FALSE;
    return inhibits ? nullptr : MockService::reply(call, g_variant_new_tuple(nullptr, 0));
}

TEST_F(Power, AReleaseBeforeTheAnswerGivesBackWhatArrives) {
    MockService slow(bus, kGnome, &hesitate);
    const auto id = power->create("why");
    EXPECT_THAT(bus.nextCall(), HasSubstr("Inhibit("));
    power->release(id);
    slow.answerHeld(g_variant_new("(u)", 5U));
    EXPECT_EQ(bus.nextCall(), "Uninhibit(5,)");
}

TEST_F(Power, AnAnswerThatComesWhileTheProgramEndsIsGivenBack) {
    MockService slow(bus, kGnome, &hesitate);
    static_cast<void>(power->create("why"));
    EXPECT_THAT(bus.nextCall(), HasSubstr("Inhibit("));
    std::thread answering([&] { slow.answerHeld(g_variant_new("(u)", 6U)); });
    power.reset();
    answering.join();
    EXPECT_EQ(bus.nextCall(), "Uninhibit(6,)");
}

TEST_F(Power, WhatIsHeldIsGivenBackAtTheEndEvenIfARequestHangs) {
    std::optional<MockService> gnome;
    MockService second(bus, kPowerManagement, cookie(8));
    static_cast<void>(power->create("first"));
    EXPECT_EQ(bus.nextCall(), "Inhibit('Reelvane', 'first')");
    gnome.emplace(bus, kGnome, [](GDBusMessage*) -> GDBusMessage* { return nullptr; });
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
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    const auto path = folder.path() / "bus";
    path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    const FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM, 0));
    // The address family is told apart by its first member, as the socket interface has it.
    ASSERT_EQ(::bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
              0);
    ASSERT_EQ(::listen(listener.get(), 5), 0);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path.native()).c_str(), 1);
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path.native()).c_str(), 1);
    static_cast<void>(power->create("why"));
    const auto start = std::chrono::steady_clock::now();
    power.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace reelvane
