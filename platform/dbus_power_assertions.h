#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/thread_pool.h"
#include "support/ports/power_assertions.h"
#include "support/ports/system_log.h"

namespace reelvane {

/// Keeps the machine awake by the first service that answers: org.gnome.SessionManager,
/// org.freedesktop.PowerManagement.Inhibit, org.freedesktop.login1. They are asked in the
/// background, in the order of the calls. Where none answers the log says so, once.
/// What is still held at its end is given back then, within a second.
class DBusPowerAssertions final : public PowerAssertions {
public:
    /// `application` names the program to the desktop.
    DBusPowerAssertions(SystemLog& log, const std::string& application);
    DBusPowerAssertions(const DBusPowerAssertions&) = delete;
    DBusPowerAssertions& operator=(const DBusPowerAssertions&) = delete;
    DBusPowerAssertions(DBusPowerAssertions&&) = delete;
    DBusPowerAssertions& operator=(DBusPowerAssertions&&) = delete;
    ~DBusPowerAssertions() override;

    [[nodiscard]] PowerAssertionID create(std::string_view name) override;
    void release(PowerAssertionID assertion) override;

private:
    class Inhibitors;
    std::shared_ptr<Inhibitors> inhibitors_;  // used by the thread alone, which may be left behind
    BackgroundThread thread_;
    PowerAssertionID last_ = kNoPowerAssertion;
};

}  // namespace reelvane
