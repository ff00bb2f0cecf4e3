#include "app/intake_messages.h"

#include <utility>

#include "support/alert_queue.h"
#include "support/alerts.h"
#include "support/vantor.h"

namespace reelvane {

bool IntakeMessages::isOneOfSeveral() const {
    return !unattended_ && (batch_ > 1 || vantor_.alertQueue().isOpen());
}

void IntakeMessages::tellOfTaken(const std::vector<VettingAlert>& alerts) {
    for (auto alert : alerts) {
        // Where nobody looks the program may end before the delay is over.
        alert.delayed = alert.delayed && !unattended_;
        raise(vantor_, alert);
    }
}

void IntakeMessages::tellOfRefused(const std::filesystem::path& file,
                                   const std::vector<VettingAlert>& alerts) {
    if (unattended_) return;
    if (!isOneOfSeveral()) {
        tellOfTaken(alerts);
        return;
    }
    std::string reason;
    for (const auto& alert : alerts) reason += (reason.empty() ? "" : "\n") + alert.message;
    refusedFiles_.add({.file = file, .reason = std::move(reason)});
}

void IntakeMessages::tellOfLeftOut(std::vector<RefusedFile> leftOut, bool alone) {
    if (alone && leftOut.size() == 1) {
        alert_apptitled(vantor_, leftOut.front().reason, "OK");
        return;
    }
    for (auto& refused : leftOut) refusedFiles_.add(std::move(refused));
}

std::vector<std::string> IntakeMessages::notes(const std::vector<VettingAlert>& alerts) const {
    std::vector<std::string> notes;
    for (const auto& alert : alerts) {
        if (!isSilenced(vantor_, alert.key)) notes.push_back(alert.message);
    }
    return notes;
}

}  // namespace reelvane
