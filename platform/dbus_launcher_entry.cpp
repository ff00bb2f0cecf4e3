#include "platform/dbus_launcher_entry.h"

#include <algorithm>
#include <cmath>

namespace reelvane {
namespace {

std::optional<int> hundredthsOf(std::optional<double> fraction) {
    if (!fraction) return std::nullopt;
    // What is no number counts as no progress.
    return *fraction > 0 ? static_cast<int>(std::lround(std::min(*fraction, 1.0) * 100)) : 0;
}

}  // namespace

DBusLauncherEntry::DBusLauncherEntry(DBusConnections& buses, const std::string& desktopEntry)
    : uri_("application://" + validUtf8(desktopEntry) + ".desktop"),
      // The path that the protocol's first library used; docks take any.
      path_("/com/canonical/unity/launcherentry/" + std::to_string(g_str_hash(uri_.c_str()))),
      docks_(buses) {}

DBusLauncherEntry::~DBusLauncherEntry() {
    docks_.finish();
}

void DBusLauncherEntry::setProgress(std::optional<double> fraction) {
    const auto hundredths = hundredthsOf(fraction);
    if (hundredths == hundredths_) return;
    hundredths_ = hundredths;
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&properties, "{sv}", "progress",
                          g_variant_new_double(hundredths.value_or(0) / 100.0));
    g_variant_builder_add(&properties, "{sv}", "progress-visible",
                          g_variant_new_boolean(hundredths ? TRUE : FALSE));
    docks_.emit(path_, "com.canonical.Unity.LauncherEntry", "Update",
                g_variant_new("(sa{sv})", uri_.c_str(), &properties));
}

}  // namespace reelvane
