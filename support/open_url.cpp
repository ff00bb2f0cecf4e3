#include "support/open_url.h"

#include "support/bundle.h"
#include "support/make_string.h"
#include "support/ports/main_bundle.h"
#include "support/ports/workspace.h"
#include "support/problem_reports.h"
#include "support/strings.h"
#include "support/value_alerts.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

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
