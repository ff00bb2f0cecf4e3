#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/thread_pool.h"
#include "support/ports/launcher_entry.h"
#include "support/ports/system_log.h"

namespace reelvane {

/// Progress by the signal com.canonical.Unity.LauncherEntry.Update, which docks follow. It is sent
/// in the background, and only for a change that can be seen: a hundredth. A dock forgets it when
/// the program ends.
class DBusLauncherEntry final : public LauncherEntry {
public:
    /// `desktopEntry` is the name of the program's desktop file, without extension.
    DBusLauncherEntry(SystemLog& log, const std::string& desktopEntry);
    DBusLauncherEntry(const DBusLauncherEntry&) = delete;
    DBusLauncherEntry& operator=(const DBusLauncherEntry&) = delete;
    DBusLauncherEntry(DBusLauncherEntry&&) = delete;
    DBusLauncherEntry& operator=(DBusLauncherEntry&&) = delete;
    ~DBusLauncherEntry() override;

    void setProgress(std::optional<double> fraction) override;

private:
    class Sender;
    std::optional<int> hundredths_;
    std::shared_ptr<Sender> sender_;  // used by the thread alone, which may be left behind
    BackgroundThread thread_;
};

}  // namespace reelvane
