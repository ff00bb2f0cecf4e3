#include "cli/held_alerts.h"

#include <utility>

namespace reelvane {

void HeldAlerts::add(const AlertContent& alert) {
    if (said_.contains(alert.message)) return;
    alerts_.push_back(alert);
}

void HeldAlerts::drop(const std::string& message) {
    std::erase_if(alerts_, [&](const AlertContent& alert) { return alert.message == message; });
    said_.insert(message);
}

std::vector<AlertContent> HeldAlerts::take() {
    return std::exchange(alerts_, {});
}

}  // namespace reelvane
