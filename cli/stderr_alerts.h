#pragma once

#include <functional>

#include "support/ports/alerts.h"

namespace reelvane {

class Console;

/// Alerts where nobody watches: each is printed on standard error, or handed to the report of a
/// conversion, and answered at once with the most cautious button.
class StderrAlerts final : public Alerts {
public:
    using Told = std::function<void(const AlertContent&)>;

    explicit StderrAlerts(Console& console) : console_(console) {}

    /// Where alerts go instead of standard error; an empty function takes that back.
    void setTold(Told told) { told_ = std::move(told); }
    [[nodiscard]] AlertAnswer runModal(const AlertContent& content) override;

private:
    Console& console_;
    Told told_;
};

}  // namespace reelvane
