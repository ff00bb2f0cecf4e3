#include "platform/dbus_launcher_entry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/dbus_connection.h"
#include "platform/glib_dispatcher.h"
#include "tests/platform/private_bus.h"

namespace reelvane {
namespace {

TEST(LauncherEntry, ADockHearsOfEveryChangeThatCanBeSeen) {
    const PrivateBus bus;
    GlibDispatcher dispatcher;
    std::string heard;
    DBusConnections dockBuses;
    DBusClient dock(dockBuses);
    dock.listen(nullptr, "com.canonical.Unity.LauncherEntry", [&](auto& name, GVariant* values) {
        heard += name + GLibText(g_variant_print(values, FALSE)).get() + "\n";
        if (heard.find("false") != std::string::npos) dispatcher.quit();
    });
    constexpr auto kBus = "org.freedesktop.DBus";
    dock.call({kBus, "/org/freedesktop/DBus", kBus, "GetId"}, g_variant_new("()"), "(s)",
              [](const DBusAnswer&) {});
    dock.finish();

    DBusConnections buses;
    DBusLauncherEntry launcher(buses, "org.example.App");
    for (const auto fraction : {std::optional<double>(), {0.5}, {0.504}, {0.746}, {7.0}, {}}) {
        launcher.setProgress(fraction);
    }
    dispatcher.run();
    std::string expected;
    for (const auto* const told :
         {"0.5>, 'progress-visible': <true", "0.75>, 'progress-visible': <true",
          "1.0>, 'progress-visible': <true", "0.0>, 'progress-visible': <false"}) {
        expected += std::string("Update('application://org.example.App.desktop', {'progress': <") +
                    told + ">})\n";
    }
    EXPECT_EQ(heard, expected);
}

}  // namespace
}  // namespace reelvane
