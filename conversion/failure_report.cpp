#include "conversion/failure_report.h"

#include "support/alerts.h"
#include "support/make_string.h"
#include "support/problem_reports.h"
#include "support/vantor.h"

namespace reelvane {

Mail failureReport(const ReportFacts& sender, const FailedRun& run) {
    return {.address = std::string(kSupportAddress),
            .subject = makeString("%@ v%@ Problem Report", sender.appName, sender.appVersionString),
            .before = makeString("Hello\nConversion of a file failed.\n\nBye\n\nP.S. Details: %@ ",
                                 run.arguments),
            .details = run.log,
            .after = makeString(" %@\n\n\nP.P.S: Hardware: %@ Software: %@ Preferences: %@",
                                run.recordDescription, sender.machineType,
                                sender.operatingSystemVersion, sender.preferences)};
}

void explainFailure(Vantor& vantor, const Diagnosis& diagnosis, const FailedRun& run) {
    if (!diagnosis.offersReport) {
        alert(vantor, diagnosis.title, diagnosis.message, "OK");
        return;
    }
    const auto answer = askForReport(vantor, diagnosis.title, diagnosis.message, "Cancel");
    if (!answer.send) return;
    openMail(vantor, failureReport(gatherReportFacts(vantor, answer.withPreferences), run));
}

}  // namespace reelvane
