#include "platform/appearance_settings.h"

#include <utility>

namespace reelvane {
namespace {

// The portal's numbers; 0 is no preference.
constexpr std::uint32_t kDark = 1;
constexpr std::uint32_t kLight = 2;
constexpr std::uint32_t kReduced = 1;

bool read(GVariant* value, std::uint32_t& to) {
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_UINT32) == FALSE) return false;
    to = g_variant_get_uint32(value);
    return true;
}

bool read(GVariant* value, bool& to) {
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) == FALSE) return false;
    to = g_variant_get_boolean(value) != FALSE;
    return true;
}

bool read(GVariant* value, std::string& to) {
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) == FALSE) return false;
    to = g_variant_get_string(value, nullptr);
    return true;
}

/// "Adwaita-dark", "Breeze-Dark"; in the environment also "Adwaita:dark".
bool isDarkTheme(const std::string& theme) {
    const GLibText lower(g_ascii_strdown(theme.c_str(), -1));
    return g_str_has_suffix(lower.get(), "-dark") != FALSE ||
           g_str_has_suffix(lower.get(), ":dark") != FALSE;
}

}  // namespace

AppearanceSettings::AppearanceSettings(std::string environmentTheme)
    : environmentTheme_(std::move(environmentTheme)) {}

bool AppearanceSettings::set(std::string_view space, std::string_view key, GVariant* value) {
    if (space == kAppearanceNamespace) {
        if (key == "color-scheme") return read(value, colorScheme_);
        if (key == "reduced-motion") return read(value, reducedMotion_);
    } else if (space == kInterfaceSchema) {
        if (key == "color-scheme") return read(value, interfaceColorScheme_);
        if (key == "gtk-theme") return read(value, interfaceTheme_);
        if (key == "enable-animations") return read(value, animations_);
    }
    return false;
}

Appearance AppearanceSettings::appearance() const {
    return {.prefersDark = prefersDark(),
            .reducedMotion = reducedMotion_ == kReduced || !animations_};
}

bool AppearanceSettings::prefersDark() const {
    if (colorScheme_ == kDark || colorScheme_ == kLight) return colorScheme_ == kDark;
    if (interfaceColorScheme_ == "prefer-dark") return true;
    if (interfaceColorScheme_ == "prefer-light") return false;
    return isDarkTheme(environmentTheme_.empty() ? interfaceTheme_ : environmentTheme_);
}

}  // namespace reelvane
