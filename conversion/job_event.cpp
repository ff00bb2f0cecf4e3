#include "conversion/job_event.h"

#include "support/alerts.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/vantor.h"

namespace reelvane {

void showAlert(Vantor& vantor, const JobEvent& event) {
    if (event.text.empty()) return;
    if (event.report) {
        offerReport(vantor, event.title, event.text, *event.report);
    } else {
        alert(vantor, event.title, event.text, "OK");
    }
}

Notification endNotification(const Translations& translations, std::string_view appName,
                             const EndedRun& run) {
    const auto named = [&](const std::string& format) {
        return makeString(format, appName, run.fileName);
    };
    if (run.failed) {
        return {.title = named(translations.localized("%@ Conversion Failed")),
                .text = named(translations.localized("%@ has failed to convert the file %@."))};
    }
    return {.title = named(translations.localized("%@ Conversion Finished")),
            .text = run.warning.empty()
                        ? named(translations.localized("%@ has finished converting the file %@."))
                        : run.warning,
            .actionTitle = translations.localized("Show"),
            .path = run.output};
}

}  // namespace reelvane
