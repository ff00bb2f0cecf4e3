#include "app/lifecycle.h"

#include <utility>

#include "app/preference_table.h"
#include "app/settings_reader.h"
#include "support/alerts.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/bundle_watch.h"
#include "support/ports/main_bundle.h"
#include "support/ports/notifications.h"
#include "support/ports/translations.h"
#include "support/ports/workspace.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::string_view kUsagesKey = "vantor_usages";

constexpr int kUsagesBeforeRating = 10;
constexpr int kUsagesBeforeFeedback = 20;

}  // namespace

void UsageCounter::increaseUsages(const Request& request) {
    auto& preferences = vantor_.preferences();
    minimumUsagesForRating_ = request.minimumUsagesForRating;
    if (!usages_) usages_ = preferences.defaultInt(kUsagesKey);
    if (request.increase != 0) {
        preferences.addToInt(kUsagesKey, request.increase);
        preferences.addToInt(versionUsagesKey(vantor_.appVersionString()), request.increase);
    }
    *usages_ += request.increase;
    isRateable_.set(minimumUsagesForRating_ >= 1 && *usages_ > minimumUsagesForRating_);
    if (!request.allowFeedbackNow || !request.forceFeedbackNow) return;
    const auto counted = Fennimar::replaced(request.feedbackText(), "[USAGES_ASKREVIEW]",
                                            std::to_string(request.usagesNamedInText));
    prompts_.notify(Fennimar::replaced(counted, "[APPNAME]", vantor_.appName()));
}

Subscription UsageCounter::observePrompts(std::function<void(const std::string&)> open) {
    return prompts_.add(std::move(open));
}

Lifecycle::Lifecycle(Vantor& vantor, JobQueue& queue)
    : vantor_(vantor),
      queue_(queue),
      usages_(vantor) {}

void Lifecycle::readIdentity() {
    const auto& translations = vantor_.ports().translations;
    build_ = makeString("%@ %i", translations.localized("Build:"), vantor_.appBuildNumber());
    version_ = makeString("%@ %@", translations.localized("Version:"), vantor_.appVersionString());
}

void Lifecycle::increaseUsages(bool increase, bool allowFeedbackNow) {
    const auto text = [this] {
        const auto count = get(vantor_.preferences(), kConvertedFileCount);
        return makeString(localizedForCount(vantor_.ports().translations,
                                            "You have now used [APPNAME] more than 20 times, "
                                            "successfully converting %li MKVs to MP4s.",
                                            static_cast<std::uint64_t>(count)),
                          count);
    };
    usages_.increaseUsages({.increase = increase ? 1 : 0,
                            .minimumUsagesForRating = kUsagesBeforeRating,
                            .usagesNamedInText = kUsagesBeforeFeedback,
                            .feedbackText = text,
                            .allowFeedbackNow = allowFeedbackNow});
}

void Lifecycle::startMoveObservation(std::function<void()> terminate) {
    const auto& ports = vantor_.ports();
    ports.bundleWatch.start(ports.mainBundle.bundlePath(),
                            [this, terminate = std::move(terminate)](std::uint32_t flags) {
                                if (flags == kRootChangedFlags) bundleMoved(terminate);
                            });
}

void Lifecycle::bundleMoved(const std::function<void()>& terminate) {
    const auto& ports = vantor_.ports();
    const auto text = [this, &ports](std::string_view format) {
        return makeString(ports.translations.localized(format), vantor_.appName());
    };
    const auto tell = [this](std::string message, std::string button) {
        runAlert(vantor_, {.title = vantor_.appName(),
                           .message = std::move(message),
                           .buttons = {std::move(button)}});
    };
    tell(text("%@ has been moved, but applications should never be moved while they are running."),
         text("Restart %@"));
    if (!relaunch_ || !relaunch_(ports.bundleWatch.currentPath())) {
        tell(text("%@ could not restart itself. Please do so yourself."), "Quit");
    }
    terminate();
}

void Lifecycle::showSpeedHintIfDue() {
    auto& preferences = vantor_.preferences();
    if (!speedHintIsDue(preferences, vantor_.appVersionString())) return;
    static_cast<void>(runAlert(
        vantor_, {.title = localized(vantor_, "Picking up Speed!"),
                  .message = localized(
                      vantor_,
                      "Note that conversion will be much faster, more reliable and higher quality "
                      "if you select 'High Speed & Quality' in the 'Audio Conversion Settings' in "
                      "the Preferences, though the resulting files may not play with sound on some "
                      "devices (e.g. iOS). Just try it out!"),
                  .buttons = {"OK"},
                  .image = "ok.png"}));
    set(preferences, kWelcomeShown, true);
    preferences.synchronize();
}

void Lifecycle::listenToNotifications() {
    auto& workspace = vantor_.ports().workspace;
    vantor_.ports().notifications.setActivation([&workspace](const Notification& clicked) {
        if (clicked.path) workspace.reveal(*clicked.path);
    });
}

bool Lifecycle::applicationShouldTerminate() {
    if (!queue_.isAtWork() && queue_.jobCountWithState(ConversionJobState::Paused) == 0) {
        return true;
    }
    const auto answer = runAlert(
        vantor_, {.title = vantor_.appName(),
                  .message = localized(
                      vantor_, "Conversion is in progresss. Are you sure you want to quit?"),
                  .buttons = {localized(vantor_, "Quit"), localized(vantor_, "Cancel")},
                  .destructive = true});
    return answer.button == kFirstButton;
}

void Lifecycle::preferencesWindowWillClose() {
    vantor_.preferences().synchronize();
}

void Lifecycle::applicationWillTerminate() {
    vantor_.preferences().synchronize();
    while (!queue_.taskArray().empty()) queue_.taskArray().front()->remove();
}

}  // namespace reelvane
