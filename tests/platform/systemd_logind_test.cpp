// Defined where the real login manager can run beside the test: see the CMake file.
#ifdef REELVANE_LOGIND

#include <gtest/gtest.h>
#include <optional>

#include "platform/dbus_connection.h"
#include "platform/dbus_power_assertions.h"
#include "support/strings.h"
#include "tests/platform/private_bus.h"
#include "tests/platform/recording_log.h"

namespace reelvane {
namespace {

struct Logind : testing::Test {
    /// Asks until it is so, and answers whether it came to that.
    bool comesToHold(std::size_t ofOurs) {
        for (int asked = 0; asked < 1000; ++asked, g_usleep(10'000)) {
            const auto answer =
                connection.call({"org.freedesktop.login1", "/org/freedesktop/login1",
                                 "org.freedesktop.login1.Manager", "ListInhibitors"},
                                g_variant_new("()"), "(a(ssssuu))", nullptr);
            if (!answer.values) continue;  // it still starts
            const GLibText text(g_variant_print(answer.values.get(), FALSE));
            if (Fennimar::split(text.get(), kOurs).size() == ofOurs + 1) return true;
        }
        return false;
    }

    static constexpr auto kOurs = "('idle', 'Reelvane', 'Converting 2 files', 'block'";
    PrivateBus bus;
    RecordingLog log;
    DBusConnection connection{Bus::System};
    Service logind = startService(REELVANE_LOGIND);
};

TEST_F(Logind, IdleIsBlockedFromTheCreationToTheReleaseOrTheEnd) {
    ASSERT_TRUE(comesToHold(0));
    std::optional<DBusPowerAssertions> power(std::in_place, log, "Reelvane");
    const auto first = power->create("Converting 2 files");
    EXPECT_TRUE(comesToHold(1));
    const auto second = power->create("Converting 2 files");
    EXPECT_TRUE(comesToHold(2));
    power->release(first);
    EXPECT_TRUE(comesToHold(1));
    EXPECT_NE(second, first);
    power.reset();
    EXPECT_TRUE(comesToHold(0));
    EXPECT_TRUE(log.messages().empty());
}

}  // namespace
}  // namespace reelvane

#endif
