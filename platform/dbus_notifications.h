#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "platform/dbus_connection.h"
#include "support/errands.h"
#include "support/ports/notifications.h"
#include "support/ports/system_log.h"

namespace reelvane {

/// Notifications by the desktop's daemon (org.freedesktop.Notifications), sent in the order of the
/// calls. Where there is no daemon the log says so, once. At its end what was delivered is still
/// sent, within a second.
class DBusNotifications final : public Notifications {
public:
    /// `application` is the program's name, `desktopEntry` the name of its desktop file, without
    /// extension, which is its icon's name too. Clicks come through the dispatcher.
    DBusNotifications(SystemLog& log, Dispatcher& dispatcher, DBusConnections& buses,
                      const std::string& application, const std::string& desktopEntry);
    DBusNotifications(const DBusNotifications&) = delete;
    DBusNotifications& operator=(const DBusNotifications&) = delete;
    DBusNotifications(DBusNotifications&&) = delete;
    DBusNotifications& operator=(DBusNotifications&&) = delete;
    ~DBusNotifications() override;

    void deliver(const Notification& notification) override;
    void setActivation(Activation activation) override;

private:
    using Capabilities = std::set<std::string, std::less<>>;

    void askCapabilities();
    void capabilitiesArrived(const DBusAnswer& answer);
    void notify(const Notification& notification);
    void tellFailure(const std::string& error);
    [[nodiscard]] GVariant* actionsOf(const Notification& notification) const;
    [[nodiscard]] GVariant* hints() const;
    void signalArrived(const std::string& name, GVariant* values);

    SystemLog& log_;
    std::string application_;
    std::string desktopEntry_;
    Activation activation_;
    std::optional<Capabilities> capabilities_;
    std::deque<Notification> waiting_;  ///< for the capabilities
    std::map<std::uint32_t, Notification> shown_;
    bool failureLogged_ = false;
    Errands clicks_;
    DBusClient daemon_;
};

}  // namespace reelvane
