#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/gio_handles.h"

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

}  // namespace reelvane
