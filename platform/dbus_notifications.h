#pragma once

#include <memory>
#include <string>

#include "platform/thread_pool.h"
#include "support/ports/dispatcher.h"
#include "support/ports/notifications.h"
#include "support/ports/system_log.h"

namespace reelvane {

/// Notifications by the desktop's daemon (org.freedesktop.Notifications), sent in the background in
/// the order of the calls. Where there is no daemon the log says so, once. At its end what was
/// delivered is still sent, within a second.
class DBusNotifications final : public Notifications {
public:
    /// `application` is the program's name, `desktopEntry` the name of its desktop file, without
    /// extension, which is its icon's name too. Clicks come through the dispatcher.
    DBusNotifications(SystemLog& log, Dispatcher& dispatcher, const std::string& application,
                      const std::string& desktopEntry);
    DBusNotifications(const DBusNotifications&) = delete;
    DBusNotifications& operator=(const DBusNotifications&) = delete;
    DBusNotifications(DBusNotifications&&) = delete;
    DBusNotifications& operator=(DBusNotifications&&) = delete;
    ~DBusNotifications() override;

    void deliver(const Notification& notification) override;
    void setActivation(Activation activation) override;

private:
    class Daemon;
    std::shared_ptr<Activation>
        activation_;                  // a click on its way to the main thread holds it weakly
    std::shared_ptr<Daemon> daemon_;  // used by the thread alone, which may be left behind
    BackgroundThread thread_;
};

}  // namespace reelvane
