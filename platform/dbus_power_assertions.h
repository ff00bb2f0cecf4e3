#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "platform/dbus_connection.h"
#include "support/ports/power_assertions.h"
#include "support/ports/system_log.h"
#include "support/posix_io.h"

namespace reelvane {

/// Keeps the machine awake by the first service that answers: org.gnome.SessionManager,
/// org.freedesktop.PowerManagement.Inhibit, org.freedesktop.login1. Where none answers the log says
/// so, once. What is still held at its end is given back then, within a second.
class DBusPowerAssertions final : public PowerAssertions {
public:
    /// `application` names the program to the desktop.
    DBusPowerAssertions(SystemLog& log, DBusConnections& buses, const std::string& application);
    DBusPowerAssertions(const DBusPowerAssertions&) = delete;
    DBusPowerAssertions& operator=(const DBusPowerAssertions&) = delete;
    DBusPowerAssertions(DBusPowerAssertions&&) = delete;
    DBusPowerAssertions& operator=(DBusPowerAssertions&&) = delete;
    ~DBusPowerAssertions() override;

    [[nodiscard]] PowerAssertionID create(std::string_view name) override;
    void release(PowerAssertionID assertion) override;

private:
    /// What keeps the machine awake for one assertion.
    struct Inhibition {
        bool isAnswered = false;
        std::size_t service = 0;  ///< by whom, once that is answered
        guint32 cookie = 0;
        FileDescriptor descriptor{};
    };

    void ask(PowerAssertionID assertion, const std::string& reason, std::size_t service);
    void answered(PowerAssertionID assertion, const std::string& reason, std::size_t service,
                  const DBusAnswer& answer);
    void giveBack(const Inhibition& inhibition);

    SystemLog& log_;
    std::string application_;
    std::map<PowerAssertionID, Inhibition> inhibitions_;  ///< not released
    bool refusalLogged_ = false;
    PowerAssertionID last_ = kNoPowerAssertion;
    DBusClient services_;
};

}  // namespace reelvane
