#include "platform/portal_appearance.h"

#include <array>
#include <cstdlib>
#include <memory>
#include <utility>

namespace reelvane {
namespace {

constexpr auto kPortal = "org.freedesktop.portal.Desktop";
constexpr auto kPortalPath = "/org/freedesktop/portal/desktop";
constexpr auto kSettings = "org.freedesktop.portal.Settings";
constexpr auto kSpaces = std::to_array<const char*>({kAppearanceNamespace, kInterfaceSchema});
constexpr auto kSchemaKeys =
    std::to_array<const char*>({"color-scheme", "gtk-theme", "enable-animations"});

// The portal's numbers; 0 is no preference.
constexpr std::uint32_t kDark = 1;
constexpr std::uint32_t kLight = 2;
constexpr std::uint32_t kReduced = 1;

struct SchemaRelease {
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};
using SchemaHandle = std::unique_ptr<GSettingsSchema, SchemaRelease>;

/// Null where the schema is not installed, for which GSettings would end the program.
SchemaHandle installedSchema(const char* name) {
    auto* const schemas = g_settings_schema_source_get_default();
    return SchemaHandle(schemas != nullptr ? g_settings_schema_source_lookup(schemas, name, TRUE)
                                           : nullptr);
}

std::string environmentTheme() {
    const char* const theme = std::getenv("GTK_THEME");
    return theme != nullptr ? theme : "";
}

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

PortalAppearance::PortalAppearance(DBusConnections& buses)
    : known_(environmentTheme()),
      shown_(known_.appearance()),
      portal_(buses) {
    portal_.listen(kPortal, kSettings, [this](const std::string& name, GVariant* values) {
        if (name == "SettingChanged") settingChanged(values);
    });
    portal_.call(
        {.service = kPortal, .path = kPortalPath, .interface = kSettings, .name = "ReadAll"},
        g_variant_new("(@as)", g_variant_new_strv(kSpaces.data(), kSpaces.size())), "(a{sa{sv}})",
        [this](const DBusAnswer& answer) {
            if (readAll(answer)) {
                show();
                return;
            }
            portal_.getSharedBus([this](GObjectHandle<GDBusConnection> shared) {
                sharedBus_ = std::move(shared);
                followSchema();
            });
        });
}

PortalAppearance::~PortalAppearance() {
    if (schemaSettings_) g_signal_handler_disconnect(schemaSettings_.get(), schemaChanges_);
}

bool PortalAppearance::prefersDark() const {
    return shown_.get().prefersDark;
}

bool PortalAppearance::reducedMotion() const {
    return shown_.get().reducedMotion;
}

Subscription PortalAppearance::observe(std::function<void()> changed) {
    return shown_.observe(std::move(changed));
}

void PortalAppearance::show() {
    shown_.set(known_.appearance());
}

/// False where the portal tells nothing that matters here.
bool PortalAppearance::readAll(const DBusAnswer& answer) {
    if (!answer.values) return false;
    bool matters = false;
    GVariantIter* spaces = nullptr;
    g_variant_get(answer.values.get(), "(a{sa{sv}})", &spaces);
    const char* space = nullptr;
    GVariantIter* settings = nullptr;
    while (g_variant_iter_loop(spaces, "{&sa{sv}}", &space, &settings) != FALSE) {
        const char* key = nullptr;
        GVariant* value = nullptr;
        while (g_variant_iter_loop(settings, "{&sv}", &key, &value) != FALSE) {
            matters = known_.set(space, key, value) || matters;
        }
    }
    g_variant_iter_free(spaces);
    return matters;
}

void PortalAppearance::settingChanged(GVariant* values) {
    if (g_variant_is_of_type(values, G_VARIANT_TYPE("(ssv)")) == FALSE) return;
    const char* space = nullptr;
    const char* key = nullptr;
    GVariant* value = nullptr;
    g_variant_get(values, "(&s&sv)", &space, &key, &value);
    const VariantHandle owned(value);
    if (known_.set(space, key, value)) show();
}

void PortalAppearance::followSchema() {
    const auto schema = installedSchema(kInterfaceSchema);
    if (!schema) return;
    schemaSettings_.reset(g_settings_new_full(schema.get(), nullptr, nullptr));
    // Only for keys that are read after this does it tell of changes.
    schemaChanges_ = g_signal_connect(
        schemaSettings_.get(), "changed",
        G_CALLBACK(+[](GSettings* /*settings*/, const char* key, gpointer self) noexcept {
            static_cast<PortalAppearance*>(self)->readSchema(key);
            static_cast<PortalAppearance*>(self)->show();
        }),
        this);
    for (const auto* const key : kSchemaKeys) {
        if (g_settings_schema_has_key(schema.get(), key) != FALSE) readSchema(key);
    }
    show();
}

void PortalAppearance::readSchema(const char* key) {
    const VariantHandle value(g_settings_get_value(schemaSettings_.get(), key));
    known_.set(kInterfaceSchema, key, value.get());
}

}  // namespace reelvane
