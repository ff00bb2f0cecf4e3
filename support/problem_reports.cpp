#include "support/problem_reports.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <future>
#include <memory>
#include <utility>

#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/host_information.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/ports/workspace.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::size_t kShownDetails = 400;  // characters
constexpr std::string_view kSendToSupport = localizable("Send to support");

std::string crashLogPart(const ReportFacts& facts) {
    return facts.crashLogCount == 0 ? "" : makeString(" Problems: %li", facts.crashLogCount);
}

std::string subjectOf(const ReportFacts& facts, std::string_view kind) {
    return makeString("%@ v%@ (%i) %@", facts.appName, facts.appVersionString, facts.appBuildNumber,
                      kind);
}

/// Where they cannot be gathered the report is sent without them.
ReportFacts factsOrNone(const Vantor& vantor, bool withPreferences) {
    try {
        return gatherReportFacts(vantor, withPreferences);
    } catch (const std::exception& failure) {
        vn_log_level(LogError, "Error: a report tells nothing of this machine: %@", failure.what());
        return {.appName = vantor.appName()};
    }
}

void offerReport(Vantor& vantor, std::string_view message, std::string_view details, bool fatal,
                 Interval mailPatience) {
    const auto information =
        makeString(localized(vantor,
                             "%@\n\n You can contact our support with detailed information so "
                             "that we can fix this problem.\n\nInformation: %@"),
                   message, shownDetails(details));
    const auto answer = askForReport(
        vantor, fatal ? localized(vantor, "Fatal Error") : localized(vantor, "Error"), information,
        fatal ? localized(vantor, "Quit") : localized(vantor, "Continue"));
    if (!answer.send) return;
    auto mail = problemReport(factsOrNone(vantor, answer.withPreferences), message, details, fatal);
    if (fatal) {
        openLastMail(vantor, mail, mailPatience);
    } else {
        openMail(vantor, std::move(mail));
    }
}

/// Runs the work on the main thread and waits for its end, but gives up when the main thread has
/// not begun it in time: it may be waiting for this very thread.
void runOnMainUnlessStuck(Vantor& vantor, const Work& work, Interval patience) {
    if (vantor.ports().dispatcher.isMainThread()) {
        work();
        return;
    }
    struct MainThreadRun {
        std::atomic<bool> claimed = false;  // by the main thread, or by the one that gave up
        std::promise<void> began;
        std::promise<void> ended;
    };
    // Shared: either thread may be the last to use it.
    const auto run = std::make_shared<MainThreadRun>();
    vantor.ports().dispatcher.asyncMain([run, &work] {
        if (run->claimed.exchange(true)) return;
        run->began.set_value();
        try {
            work();
            run->ended.set_value();
        } catch (...) {
            run->ended.set_exception(std::current_exception());
        }
    });
    const bool began = run->began.get_future().wait_for(patience) == std::future_status::ready;
    if (!began && !run->claimed.exchange(true)) {
        vn_log_level(LogError, "Error: the main thread is stuck, so no alert can be shown");
        return;
    }
    run->ended.get_future().get();
}

constexpr std::string_view kMakersWebSite = "https://www.reelvane.org/";

std::string infoLink(const Vantor& vantor, std::string_view key) {
    return vantor.ports().mainBundle.infoValue(key).value_or("");
}

std::string productPage(const Vantor& vantor) {
    if (auto page = infoLink(vantor, "VendorProductPage"); !page.empty()) return page;
    const auto name = Fennimar::lowercased(vantor.appName());
    const auto word = Fennimar::partBefore(Fennimar::partBefore(name, " "), "-");
    return makeString("%@%@/", kMakersWebSite, word);
}

void askForSupport(Vantor& vantor) {
    bool withPreferences = false;
    const auto answer = alert_checkbox(
        vantor,
        localizable("Your mail program opens with a line about your computer. Nothing is sent "
                    "before you send it."),
        {std::string(localizable("Write the Mail")), std::string(localizable("Cancel"))},
        kAttachPreferences, withPreferences);
    if (answer == kFirstButton) {
        sendSupportRequestMail(vantor, "<Insert Support Request Here>", withPreferences);
    }
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

Mail problemReport(const ReportFacts& facts, std::string_view message, std::string_view details,
                   bool fatal) {
    return {.address = std::string(kSupportAddress),
            .subject = subjectOf(facts, "Problem Report"),
            .before = makeString("Hello\nA %@ error in %@ occured (%@).\n\nBye\n\nP.S. Details: ",
                                 fatal ? "fatal" : "", facts.appName, message),
            .details = std::string(details),
            .after = makeString("\n\n\nP.P.S: Hardware: %@ Software: %@ Admin: %i%@\n\n"
                                "Preferences: %@\n",
                                facts.machineType, facts.operatingSystemVersion, facts.isUserAdmin,
                                crashLogPart(facts), facts.preferences)};
}

Mail supportRequest(const ReportFacts& facts, std::string_view address, std::string_view text) {
    return {
        .address = std::string(address),
        .subject = subjectOf(facts, "Support Request"),
        .details = std::string(text),
        .after = makeString("\n\n\n\nP.S: Hardware: %@ Software: %@%@\n%@", facts.machineType,
                            facts.operatingSystemVersion, crashLogPart(facts), facts.preferences)};
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
    const Work report = [&] { offerReport(vantor, message, details, fatal, end.mailPatience); };
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

ReportAnswer askForReport(Vantor& vantor, std::string_view title, std::string_view message,
                          std::string_view otherButton) {
    const auto answer =
        runAlert(vantor, {.title = std::string(title),
                          .message = std::string(message),
                          .buttons = {std::string(kSendToSupport), std::string(otherButton)},
                          .accessory = {.kind = AlertAccessory::Kind::Checkbox,
                                        .label = std::string(kAttachPreferences),
                                        .index = 1}});
    return {.send = answer.button == kFirstButton, .withPreferences = answer.index != 0};
}

void sendSupportRequestMail(Vantor& vantor, std::string_view text, bool withPreferences) {
    openMail(vantor, supportRequest(gatherReportFacts(vantor, withPreferences),
                                    feedbackAddress(vantor), text));
}

std::string linkForChoice(const Vantor& vantor, int choice) {
    switch (choice) {
        case BetaTestURL:
            // The "s" in place of a mail scheme is how this link has always been.
            return makeString(
                "s%@?subject=%@ Beta Versions&body=Hello\nI would like to test upcoming beta "
                "versions of %@.\nBye\n",
                feedbackAddress(vantor), vantor.appName(), vantor.appName());
        case ProductPageURL:
            return productPage(vantor);
        case StorePageURL:
            return infoLink(vantor, "StoreProductPage");
        case StoreApplicationURL:
            return Fennimar::replaced(infoLink(vantor, "StoreProductPage"), "https", "macappstore");
        case MacupdatePageURL:
            return infoLink(vantor, "MacupdateProductPage");
        default:
            return {};
    }
}

void openURL(Vantor& vantor, int choice) {
    if (choice == SupportRequestURL) {
        askForSupport(vantor);
        return;
    }
    vantor.ports().workspace.openURL(Fennimar::escaped(linkForChoice(vantor, choice)), {});
}

}  // namespace reelvane
