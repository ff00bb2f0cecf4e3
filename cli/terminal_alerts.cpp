#include "cli/terminal_alerts.h"

#include <utility>

#include "cli/console.h"
#include "cli/text_reporter.h"
#include "support/alerts.h"
#include "support/strings.h"

namespace reelvane {

AlertAnswer StderrAlerts::runModal(const AlertContent& content) {
    if (handler_) {
        handler_(content);
    } else {
        console_.error(errorText(printable(content.title), {}, content.message));
    }
    return {.button = cautiousButton(content)};
}

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
