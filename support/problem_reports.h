#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "support/localization.h"
#include "support/mail.h"
#include "support/ports/dispatcher.h"

/// Reports to the maker by mail: an unexpected failure, or a user's request for support.
namespace reelvane {

class Vantor;

/// Where a problem report goes, whatever the information file says.
inline constexpr std::string_view kSupportAddress = "support@reelvane.org";

/// The check box that decides whether a mail carries the stored preferences.
inline constexpr std::string_view kAttachPreferences = localizable("Attach my preferences");

/// What a mail to the support says of the program and of the machine it runs on.
struct ReportFacts {
    std::string appName{};
    std::string appVersionString{};
    int appBuildNumber = 0;
    std::string machineType{};
    std::string operatingSystemVersion{};
    bool isUserAdmin = false;
    std::size_t crashLogCount = 0;
    std::string preferences{};  ///< the stored preferences' file in Base64; empty: left out
};

/// Asks the host. Any thread.
[[nodiscard]] ReportFacts gatherReportFacts(const Vantor& vantor, bool withPreferences);

[[nodiscard]] Mail problemReport(const ReportFacts& facts, std::string_view message,
                                 std::string_view details, bool fatal);
[[nodiscard]] Mail supportRequest(const ReportFacts& facts, std::string_view address,
                                  std::string_view text);
/// What the alert shows of the details: all of up to 400 characters, else their beginning.
[[nodiscard]] std::string shownDetails(std::string_view details);

/// `FeedbackEmail` of the information file, else the built-in address.
[[nodiscard]] std::string feedbackAddress(const Vantor& vantor);

/// Ends the process with a status. Tests hand in one that only takes note.
using EndProcess = std::function<void(int status)>;
/// Ends the process at once. Nothing is cleaned up: preferences are on disk already, children die
/// with their parent, and after an unexpected failure no destructor can be trusted.
[[noreturn]] void endProcess(int status);

/// How a fatal report ends, and how long it waits: for a main thread that may itself be stuck, and
/// for the mail program.
struct FatalEnd {
    EndProcess endProcess = reelvane::endProcess;
    Interval patience = std::chrono::seconds(10);
    Interval mailPatience = std::chrono::seconds(5);
};

/// Shows what went wrong and opens the mail if the user wants to send it. Any thread; waits for the
/// user's answer. A fatal one ends the process with status 1; off the main thread it does so
/// without an alert when the main thread does not turn to it in time.
void alert_feedback(Vantor& vantor, std::string_view message, std::string_view details, bool fatal,
                    const FatalEnd& end = {});
void alert_feedback_fatal(Vantor& vantor, std::string_view message, std::string_view details,
                          const FatalEnd& end = {});
void alert_feedback_nonfatal(Vantor& vantor, std::string_view message, std::string_view details);

/// Asks whether a report is to be sent, and by a check box whether the preferences go with it, as
/// they do unless the user says otherwise. Blocks; main thread only.
struct ReportAnswer {
    bool send = false;
    bool withPreferences = false;
};
[[nodiscard]] ReportAnswer askForReport(Vantor& vantor, std::string_view title,
                                        std::string_view message, std::string_view otherButton);

/// Opens a mail to the support that begins with the text. Main thread only.
void sendSupportRequestMail(Vantor& vantor, std::string_view text, bool withPreferences);

/// The links that a menu offers. Stored nowhere, but menus and interface files name the numbers.
enum URLChoice : int {
    SupportRequestURL = 1,    ///< a mail to the support
    BetaTestURL = 2,          ///< a request for beta versions
    ProductPageURL = 3,       ///< the product's web page
    StorePageURL = 4,         ///< its page in the store, in a web browser
    StoreApplicationURL = 5,  ///< the same in the store application
    MacupdatePageURL = 6      ///< its page in a software directory
};

/// The link of choices 2 to 6, not yet percent-encoded; empty for other choices and where the
/// information file names no page.
[[nodiscard]] std::string linkForChoice(const Vantor& vantor, int choice);

/// Opens one of the links with the user's program for it. Main thread only.
void openURL(Vantor& vantor, int choice);

}  // namespace reelvane
