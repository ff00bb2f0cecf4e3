#include "conversion/failure_report.h"

#include "support/alerts.h"
#include "support/make_string.h"
#include "support/ports/workspace.h"
#include "support/problem_reports.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

namespace {

/// One field of the link. Escaping leaves the separator of fields alone, so it is encoded here.
std::string field(std::string_view text) {
    return Fennimar::replaced(Fennimar::escaped(Fennimar::validUtf8(text)), "&", "%26");
}

}  // namespace

std::string failureReportLink(const ReportFacts& sender, const FailedRun& run) {
    const auto subject =
        makeString("%@ v%@ Problem Report", sender.appName, sender.appVersionString);
    const auto body = makeString(
        "Hello\nConversion of a file failed.\n\nBye\n\nP.S. Details: %@ %@ %@\n\n\n"
        "P.P.S: Hardware: %@ Software: %@ Preferences: %@",
        run.arguments, run.jobOutput, run.recordDescription, sender.machineType,
        sender.operatingSystemVersion, sender.preferences);
    return makeString("mailto:%@?subject=%@&body=%@", kSupportAddress, field(subject), field(body));
}

void explainFailure(Vantor& vantor, const Diagnosis& diagnosis, const FailedRun& run) {
    if (!diagnosis.offersReport) {
        alert(vantor, diagnosis.title, diagnosis.message, "OK");
        return;
    }
    const auto answer =
        alert(vantor, diagnosis.title, diagnosis.message, "Send to support", "Cancel");
    if (answer != kFirstButton) return;
    vantor.ports().workspace.openURL(failureReportLink(gatherReportFacts(vantor, true), run));
}

}  // namespace reelvane
