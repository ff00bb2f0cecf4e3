#include "support/problem_reports.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <future>
#include <memory>
#include <utility>

#include "support/alerts.h"
#include "support/bundle.h"
#include "support/dispatch.h"
#include "support/host_information.h"
#include "support/logging.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/ports/workspace.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::size_t kShownDetails = 400;  // characters

std::string crashLogPart(const ReportFacts& facts) {
    return facts.crashLogCount == 0 ? "" : makeString(" Problems: %li", facts.crashLogCount);
}

std::string mailLink(std::string_view address, const ReportFacts& facts, std::string_view kind,
                     std::string_view body) {
    const auto subject = makeString("%@ v%@ (%i) %@", facts.appName, facts.appVersionString,
                                    facts.appBuildNumber, kind);
    return makeString("mailto:%@?subject=%@&body=%@", address, subject, body);
}

/// Empty when the facts could not be gathered: the user is told of the failure all the same.
std::string linkOrNothing(const Vantor& vantor, std::string_view message, std::string_view details,
                          bool fatal) {
    try {
        return problemReportLink(gatherReportFacts(vantor, true), message, details, fatal);
    } catch (const std::exception& failure) {
        vn_log_level(LogError, "Error: no problem report could be made: %@", failure.what());
        return {};
    }
}

void offerReport(Vantor& vantor, std::string_view message, std::string_view details, bool fatal) {
    const auto link = linkOrNothing(vantor, message, details, fatal);
    const auto information =
        makeString(localized(vantor,
                             "%@\n\n You can contact our support with detailed information so "
                             "that we can fix this problem.\n\nInformation: %@"),
                   message, shownDetails(details));
    const auto answer =
        alert(vantor, fatal ? localized(vantor, "Fatal Error") : localized(vantor, "Error"),
              information, localized(vantor, "Send to support"),
              fatal ? localized(vantor, "Quit") : localized(vantor, "Continue"));
    if (answer == kFirstButton) vantor.ports().workspace.openURL(Fennimar::escaped(link));
}

/// Runs the work on the main thread and waits for its end, but gives up when the main thread has
/// not begun it in time: it may be waiting for this very thread.
void runOnMainUnlessStuck(Vantor& vantor, const Work& work, Interval patience) {
    if (vantor.ports().dispatcher.isMainThread()) {
        work();
        return;
    }
    struct Turn {
        std::atomic<bool> claimed = false;  // by the main thread, or by the one that gave up
        std::promise<void> began;
        std::promise<void> ended;
    };
    const auto turn = std::make_shared<Turn>();  // shared: either thread may be the last to use it
    vantor.ports().dispatcher.asyncMain([turn, &work] {
        if (turn->claimed.exchange(true)) return;
        turn->began.set_value();
        try {
            work();
            turn->ended.set_value();
        } catch (...) {
            turn->ended.set_exception(std::current_exception());
        }
    });
    const bool began = turn->began.get_future().wait_for(patience) == std::future_status::ready;
    if (!began && !turn->claimed.exchange(true)) {
        vn_log_level(LogError, "Error: the main thread is stuck, so no alert can be shown");
        return;
    }
    turn->ended.get_future().get();
}

}  // namespace

ReportFacts gatherReportFacts(const Vantor& vantor, bool withPreferences) {
    return {.appName = vantor.appName(),
            .appVersionString = vantor.appVersionString(),
            .appBuildNumber = vantor.appBuildNumber(),
            .machineType = machineType(vantor),
            .operatingSystemVersion = vantor.ports().host.operatingSystemVersion(),
            .isUserAdmin = isUserAdmin(vantor),
            .crashLogCount = crashLogs(vantor).size(),
            .preferences = withPreferences ? base64OfFile(vantor.prefsPath()) : ""};
}

std::string problemReportLink(const ReportFacts& facts, std::string_view message,
                              std::string_view details, bool fatal) {
    const auto body = makeString(
        "Hello\nA %@ error in %@ occured (%@).\n\nBye\n\nP.S. Details: %@\n\n\nP.P.S: Hardware: %@ "
        "Software: %@ Admin: %i%@\n\nPreferences: %@\n",
        fatal ? "fatal" : "", facts.appName, message, details, facts.machineType,
        facts.operatingSystemVersion, facts.isUserAdmin, crashLogPart(facts), facts.preferences);
    return mailLink(kSupportAddress, facts, "Problem Report", body);
}

std::string supportRequestLink(const ReportFacts& facts, std::string_view address,
                               std::string_view text) {
    const auto body =
        makeString("%@\n\n\n\nP.S: Hardware: %@ Software: %@%@\n%@", text, facts.machineType,
                   facts.operatingSystemVersion, crashLogPart(facts), facts.preferences);
    return mailLink(address, facts, "Support Request", body);
}

std::string shownDetails(std::string_view details) {
    if (Fennimar::characterCount(details) <= kShownDetails) return std::string(details);
    return makeString("%@  …\n(Remaining message omitted)",
                      Fennimar::clamp(details, kShownDetails));
}

std::string feedbackAddress(const Vantor& vantor) {
    return vantor.ports()
        .mainBundle.infoValue("FeedbackEmail")
        .value_or(std::string(kSupportAddress));
}

void endProcess(int status) {
    std::_Exit(status);
}

void alert_feedback(Vantor& vantor, std::string_view message, std::string_view details, bool fatal,
                    const FatalEnd& end) {
    vn_log_level(LogError, "alert_feedback %@ %@", message, details);
    const Work report = [&] { offerReport(vantor, message, details, fatal); };
    if (!fatal) {
        dispatch_sync_main(vantor, report);
        return;
    }
    runOnMainUnlessStuck(vantor, report, end.patience);
    end.endProcess(1);
}

void alert_feedback_fatal(Vantor& vantor, std::string_view message, std::string_view details,
                          const FatalEnd& end) {
    alert_feedback(vantor, message, details, true, end);
}

void alert_feedback_nonfatal(Vantor& vantor, std::string_view message, std::string_view details) {
    alert_feedback(vantor, message, details, false);
}

void sendSupportRequestMail(Vantor& vantor, std::string_view text) {
    const auto facts = gatherReportFacts(vantor, vantor.ports().workspace.isOptionKeyHeld());
    const auto link = supportRequestLink(facts, feedbackAddress(vantor), text);
    vantor.ports().workspace.openURL(Fennimar::escaped(link));
}

}  // namespace reelvane
