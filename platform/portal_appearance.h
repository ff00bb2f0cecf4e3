#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/dbus_connection.h"
#include "support/observable.h"
#include "support/ports/desktop_appearance.h"

namespace reelvane {

inline constexpr auto kAppearanceNamespace = "org.freedesktop.appearance";
inline constexpr auto kInterfaceSchema = "org.gnome.desktop.interface";

struct Appearance {
    bool prefersDark = false;
    bool reducedMotion = false;

    bool operator==(const Appearance&) const = default;
};

/// What a desktop stores of how its programs should look, and what that means.
class AppearanceSettings {
public:
    /// `environmentTheme` is the theme that the environment asks for, or empty.
    explicit AppearanceSettings(std::string environmentTheme);

    /// A setting as the portal tells it, with a schema's name for its namespace. False: it is none
    /// that matters here.
    bool set(std::string_view space, std::string_view key, GVariant* value);
    [[nodiscard]] Appearance appearance() const;

private:
    [[nodiscard]] bool prefersDark() const;

    std::string environmentTheme_;
    std::uint32_t colorScheme_ = 0;
    std::uint32_t reducedMotion_ = 0;
    std::string interfaceColorScheme_;
    std::string interfaceTheme_;
    bool animations_ = true;
};

/// What the settings portal (org.freedesktop.portal.Settings) says, as it changes. It is asked from
/// the start on. Where there is none, GNOME's settings answer if their schema is installed; until
/// one of them does, and without a bus, GTK_THEME alone.
class PortalAppearance final : public DesktopAppearance {
public:
    explicit PortalAppearance(DBusConnections& buses);
    PortalAppearance(const PortalAppearance&) = delete;
    PortalAppearance& operator=(const PortalAppearance&) = delete;
    PortalAppearance(PortalAppearance&&) = delete;
    PortalAppearance& operator=(PortalAppearance&&) = delete;
    ~PortalAppearance() override;

    [[nodiscard]] bool prefersDark() const override;
    [[nodiscard]] bool reducedMotion() const override;
    [[nodiscard]] Subscription observe(std::function<void()> changed) override;

private:
    [[nodiscard]] bool readAll(const DBusAnswer& answer);
    void settingChanged(GVariant* values);
    void followSchema();
    void readSchema(const char* key);
    void show();

    AppearanceSettings known_;
    Observable<Appearance> shown_;
    GObjectHandle<GDBusConnection> sharedBus_;  ///< what stores GNOME's settings uses it
    GObjectHandle<GSettings> schemaSettings_;
    gulong schemaChanges_ = 0;
    DBusClient portal_;
};

}  // namespace reelvane
