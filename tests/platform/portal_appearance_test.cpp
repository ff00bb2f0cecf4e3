#include "platform/portal_appearance.h"

#include <array>
#include <gtest/gtest.h>
#include <tuple>

#include "platform/glib_dispatcher.h"
#include "tests/platform/private_bus.h"

namespace reelvane {
namespace {

constexpr auto kPortal = "org.freedesktop.portal.Desktop";
constexpr auto kPath = "/org/freedesktop/portal/desktop";
constexpr auto kSettings = "org.freedesktop.portal.Settings";

TEST(AppearanceSettings, TheClearestWishCounts) {
    const auto* const standard = kAppearanceNamespace;
    const auto* const gnome = kInterfaceSchema;
    using Setting = std::array<const char*, 3>;
    const Setting darkTheme{gnome, "gtk-theme", "'Breeze-Dark'"};
    const std::vector<std::tuple<const char*, std::vector<Setting>, Appearance>> rows{
        {"", {darkTheme}, {true, false}},
        {"Adwaita:dark", {{gnome, "gtk-theme", "'Adwaita'"}}, {true, false}},
        {"Adwaita", {darkTheme}, {false, false}},
        {"", {darkTheme, {gnome, "color-scheme", "'prefer-light'"}}, {false, false}},
        {"Adwaita", {{gnome, "color-scheme", "'prefer-dark'"}}, {true, false}},
        {"", {darkTheme, {standard, "color-scheme", "uint32 2"}}, {false, false}},
        {"", {darkTheme, {standard, "color-scheme", "uint32 0"}}, {true, false}},
        {"", {{standard, "color-scheme", "'1'"}}, {false, false}},
        {"", {{standard, "reduced-motion", "uint32 1"}}, {false, true}},
    };
    for (const auto& [environment, given, expected] : rows) {
        AppearanceSettings settings(environment);
        for (const auto& [space, key, value] : given) {
            const VariantHandle owned(g_variant_ref_sink(g_variant_new_parsed(value)));
            settings.set(space, key, owned.get());
        }
        EXPECT_EQ(settings.appearance(), expected) << environment << given.back().back();
    }
}

struct PortalAppearanceTest : testing::Test {
    void SetUp() override { ::unsetenv("GTK_THEME"); }

    PrivateBus bus;
    GlibDispatcher dispatcher;
    DBusConnections buses;
};

TEST_F(PortalAppearanceTest, ThePortalIsFollowed) {
    MockService portal(bus, kPortal, [](GDBusMessage* call) {
        return MockService::reply(
            call, g_variant_new_parsed(
                      "({'org.freedesktop.appearance': {'color-scheme': <uint32 1>},"
                      " 'org.gnome.desktop.interface': {'enable-animations': <false>}},)"));
    });
    PortalAppearance appearance(buses);
    const auto subscription = appearance.observe([this] { dispatcher.quit(); });
    EXPECT_FALSE(appearance.prefersDark());
    dispatcher.run();
    EXPECT_TRUE(appearance.prefersDark());
    EXPECT_TRUE(appearance.reducedMotion());
    for (const bool dark : {false, true}) {
        portal.emit(kPath, kSettings, "SettingChanged",
                    g_variant_new("(ssv)", kAppearanceNamespace, "color-scheme",
                                  g_variant_new_uint32(dark ? 1 : 2)));
        dispatcher.run();
        EXPECT_EQ(appearance.prefersDark(), dark);
    }
}

TEST_F(PortalAppearanceTest, WithoutAPortalGNOMEsSettingsAreFollowed) {
    // Once for the process: a schema that is older than the key "color-scheme".
    static const TemporaryFolder schemas;
    schemas.write("test.gschema.xml",
                  "<schemalist><schema id='org.gnome.desktop.interface' path='/test/'>"
                  "<key name='gtk-theme' type='s'><default>'Some-dark'</default></key>"
                  "<key name='enable-animations' type='b'><default>true</default></key>"
                  "</schema></schemalist>");
    ::setenv("GSETTINGS_SCHEMA_DIR", schemas.path().c_str(), 1);
    ::setenv("GSETTINGS_BACKEND", "memory", 1);
    const auto compile = "glib-compile-schemas " + schemas.path().native();
    ASSERT_NE(g_spawn_command_line_sync(compile.c_str(), nullptr, nullptr, nullptr, nullptr),
              FALSE);

    PortalAppearance appearance(buses);
    const auto subscription = appearance.observe([this] { dispatcher.quit(); });
    dispatcher.run();
    EXPECT_TRUE(appearance.prefersDark());
    EXPECT_FALSE(appearance.reducedMotion());
    const GObjectHandle<GSettings> settings(g_settings_new(kInterfaceSchema));
    g_settings_set_boolean(settings.get(), "enable-animations", FALSE);
    dispatcher.run();
    EXPECT_TRUE(appearance.reducedMotion());
}

}  // namespace
}  // namespace reelvane
