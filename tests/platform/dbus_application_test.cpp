#include "platform/dbus_application.h"

#include <array>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/dbus_connection.h"
#include "platform/glib_dispatcher.h"
#include "tests/fakes/fake_platform.h"
#include "tests/platform/private_bus.h"

namespace reelvane {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::UnorderedElementsAreArray;
using Role = ApplicationInstance::Role;

constexpr auto kName = "org.example.One-App";
constexpr auto kPath = "/org/example/One_App";

struct Application : testing::Test {
    /// A request to whoever owns the name, as the desktop makes them.
    void ask(const char* method, const char* arguments) const {
        g_dbus_connection_call(desktop.get(), kName, kPath, "org.freedesktop.Application", method,
                               g_variant_new_parsed(arguments), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                               nullptr, nullptr, nullptr);
    }

    PrivateBus bus;
    FakeSystemLog log;
    GlibDispatcher dispatcher;
    GObjectHandle<GDBusConnection> desktop =
        openBus(Bus::Session, std::chrono::seconds(10), nullptr);
};

struct WaitForAll {
    void operator()(std::FILE* output) const { ::pclose(output); }
};
using Starts = std::unique_ptr<std::FILE, WaitForAll>;

/// Runs the helper for each file, all at once.
Starts start(const std::string& files) {
    const auto helper = "XDG_ACTIVATION_TOKEN=token '" REELVANE_SINGLE_INSTANCE "' " +
                        std::string(kName) + " \"$file\"";
    return Starts(
        ::popen(("for file in " + files + "; do " + helper + " & done; wait").c_str(), "r"));
}

/// So many of the lines that they write, or fewer where all processes have ended.
std::vector<std::string> lines(const Starts& starts, std::size_t count) {
    std::vector<std::string> read;
    std::array<char, 100> line{};
    while (read.size() < count && std::fgets(line.data(), line.size(), starts.get()) != nullptr) {
        read.emplace_back(line.data());
    }
    return read;
}

TEST_F(Application, TenStartsAtOnceAreOneProcessThatOpensEveryFileOnce) {
    std::string files;
    std::vector<std::string> expected{"runs\n", "quit\n"};
    for (char name = 'a'; name < 'a' + 10; ++name) {
        const auto file = std::string("/# \xff") + name;
        files += " '" + file + "'";
        expected.push_back("opens " + file + "\n");
        if (name != 'a') expected.emplace_back("handed over\n");
    }
    const auto starts = start(files);
    auto told = lines(starts, 20);
    ask("ActivateAction", "('quit', @av [], @a{sv} {})");
    for (const auto& line : lines(starts, 20)) told.push_back(line);
    EXPECT_THAT(told, UnorderedElementsAreArray(expected));
}

TEST_F(Application, AnOwnerThatVanishesBeforeItAnswersIsReplaced) {
    std::optional<MockService> owner{std::in_place, bus, kName,
                                     [](GDBusMessage*) { return nullptr; }};
    const auto starts = start("'/m \xff.mkv'");
    EXPECT_EQ(bus.nextCall(), "Open(['file:///m%20%FF.mkv'], {'activation-token': <'token'>})");
    owner.reset();
    EXPECT_THAT(lines(starts, 2), ElementsAre("runs\n", "opens /m \xff.mkv\n"));
    ask("ActivateAction", "('quit', @av [], @a{sv} {})");  // reaches the new owner
    EXPECT_THAT(lines(starts, 2), ElementsAre("quit\n"));
}

TEST_F(Application, WhatComesBeforeTheProgramIsReadyIsKept) {
    DBusApplication application(log, kName);
    EXPECT_EQ(application.claim({"/own.mkv"}), Role::Primary);
    ask("Open",
        "(['file:///a%FFb', 'smb://host/c', 'file://localhost/d', 'file://elsewhere/e'],"
        " {'activation-token': <'t1'>, 'desktop-startup-id': <'t2'>})");
    ask("Activate", "({'desktop-startup-id': <'t3'>},)");
    ask("ActivateAction", "('preferences', @av [], @a{sv} {})");
    std::string action;
    application.setAction([&](const std::string& name) {
        action = name;
        dispatcher.quit();
    });
    dispatcher.run();
    EXPECT_EQ(action, "preferences");
    std::vector<std::string> opened;
    application.setOpen([&](const ApplicationInstance::OpenRequest& request) {
        opened.push_back(request.activationToken);
        for (const auto& file : request.files) opened.back() += " " + file.native();
    });
    EXPECT_THAT(opened, ElementsAre("t1 /a\xff"
                                    "b /d",
                                    "t3"));
    EXPECT_THAT(log.written,
                ElementsAre(Pair(_, HasSubstr("smb://host/c")), Pair(_, HasSubstr("elsewhere"))));
}

TEST_F(Application, AStrangerThatOwnsTheNameOrNoBusLeaveTheProgramAlone) {
    const MockService stranger(bus, kName, &MockService::refuse);
    EXPECT_EQ(DBusApplication(log, kName).claim({"/a.mkv"}), Role::Primary);
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(DBusApplication(log, kName).claim({"/a.mkv"}), Role::Primary);
    EXPECT_THAT(log.written,
                ElementsAre(Pair(_, HasSubstr("not today")), Pair(_, HasSubstr("no session bus"))));
}

}  // namespace
}  // namespace reelvane
