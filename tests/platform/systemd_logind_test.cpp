// Defined where the real login manager can run beside the test: see the CMake file.
#ifdef REELVANE_LOGIND

#include <gtest/gtest.h>
#include <optional>

#include "platform/dbus_connection.h"
#include "platform/dbus_power_assertions.h"
#include "tests/platform/private_bus.h"
#include "tests/platform/recording_log.h"

namespace reelvane {
namespace {

struct Logind : testing::Test {
    Logind() {
        g_subprocess_launcher_set_child_setup(
            launcher.get(), [](gpointer) { ::prctl(PR_SET_PDEATHSIG, SIGKILL); }, nullptr, nullptr);
        logind.reset(
            g_subprocess_launcher_spawn(launcher.get(), nullptr, REELVANE_LOGIND, nullptr));
    }
    ~Logind() override { g_subprocess_force_exit(logind.get()); }

    /// Who inhibits what; "no answer" while the login manager starts.
    std::string inhibitors() {
        const auto answer =
            connection.call({"org.freedesktop.login1", "/org/freedesktop/login1",
                             "org.freedesktop.login1.Manager", "ListInhibitors"},
                            g_variant_new_tuple(nullptr, 0), "(a(ssssuu))", nullptr);
        if (!answer.values) return "no answer";
        std::string text;
        GVariantIter* rows = nullptr;
        g_variant_get(answer.values.get(), "(a(ssssuu))", &rows);
        const char* words[4]{};
        while (g_variant_iter_next(rows, "(&s&s&s&suu)", &words[0], &words[1], &words[2], &words[3],
                                   nullptr, nullptr) != FALSE)
            for (const auto* const word : words) text += std::string(word) + ";";
        g_variant_iter_free(rows);
        return text;
    }

    /// Asks until the inhibitors read so; the last answer when they never do.
    std::string awaited(const std::string& expected) {
        auto text = inhibitors();
        for (int asked = 0; asked < 1000 && text != expected; ++asked) {
            g_usleep(10'000);
            text = inhibitors();
        }
        return text;
    }

    PrivateBus bus;
    RecordingLog log;
    DBusConnection connection{Bus::System};
    GObjectHandle<GSubprocessLauncher> launcher{
        g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_STDERR_SILENCE)};
    GObjectHandle<GSubprocess> logind;
};

TEST_F(Logind, IdleIsBlockedFromTheCreationToTheReleaseOrTheEnd) {
    const std::string held = "idle;Reelvane;Converting 2 files;block;";
    ASSERT_EQ(awaited(""), "");
    std::optional<DBusPowerAssertions> power(std::in_place, log, "Reelvane");
    const auto first = power->create("Converting 2 files");
    EXPECT_EQ(awaited(held), held);
    const auto second = power->create("Converting 2 files");
    EXPECT_EQ(awaited(held + held), held + held);
    power->release(first);
    EXPECT_EQ(awaited(held), held);
    EXPECT_NE(second, first);
    power.reset();
    EXPECT_EQ(awaited(""), "");
    EXPECT_TRUE(log.messages().empty());
}

}  // namespace
}  // namespace reelvane

#endif
