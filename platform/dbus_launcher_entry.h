#pragma once

#include <optional>
#include <string>

#include "platform/dbus_connection.h"
#include "support/ports/launcher_entry.h"

namespace reelvane {

/// Progress by the signal com.canonical.Unity.LauncherEntry.Update, which docks follow. It is sent
/// only for a change that can be seen: a hundredth. A dock forgets it when the program ends.
class DBusLauncherEntry final : public LauncherEntry {
public:
    /// `desktopEntry` is the name of the program's desktop file, without extension.
    DBusLauncherEntry(DBusConnections& buses, const std::string& desktopEntry);
    DBusLauncherEntry(const DBusLauncherEntry&) = delete;
    DBusLauncherEntry& operator=(const DBusLauncherEntry&) = delete;
    DBusLauncherEntry(DBusLauncherEntry&&) = delete;
    DBusLauncherEntry& operator=(DBusLauncherEntry&&) = delete;
    /// What was set is still sent.
    ~DBusLauncherEntry() override;

    void setProgress(std::optional<double> fraction) override;

private:
    std::string uri_;
    std::string path_;
    std::optional<int> hundredths_;
    DBusClient docks_;
};

}  // namespace reelvane
