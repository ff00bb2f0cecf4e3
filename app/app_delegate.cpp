#include "app/app_delegate.h"

#include <utility>

#include "app/settings_reader.h"
#include "media/languages.h"
#include "support/dispatch.h"
#include "support/ports/host.h"
#include "support/vantor.h"

namespace reelvane {

void WindowRequests::openMainWindow() {
    observers_.notify({.kind = WindowRequest::Kind::Main});
}

void WindowRequests::openDocumentationWindow(std::optional<int> tab) {
    const bool namesTab = tab && *tab >= 0;
    observers_.notify(
        {.kind = WindowRequest::Kind::Documentation, .tab = namesTab ? tab : std::nullopt});
}

void WindowRequests::openPromotion() {
    observers_.notify({.kind = WindowRequest::Kind::Promotion});
}

Subscription WindowRequests::observe(std::function<void(const WindowRequest&)> open) {
    return observers_.add(std::move(open));
}

AppDelegate::AppDelegate(Vantor& vantor, RunChoices choices)
    : vantor_(vantor),
      choices_(std::move(choices)),
      outputs_(std::make_shared<Outputs>(vantor, names_)),
      unfinished_(vantor),
      control_(vantor, queue_),
      destinations_(vantor),
      intake_(vantor, *this, destinations_, names_, choices_),
      lifecycle_(vantor, queue_),
      rest_(vantor, queue_, control_, intake_, [this] { terminate(); }),
      jobOwner_(vantor, {.queue = queue_,
                         .control = control_,
                         .rest = rest_,
                         .lifecycle = lifecycle_,
                         .outputs = outputs_,
                         .unattended = choices_.unattended}),
      retakenMovies_(intake_.present().observe([this] {
          if (intake_.state() == IntakeState::Reading) {
              control_.forgetRemovalOf(intake_.presentFile());
          }
      })) {}

AppDelegate::~AppDelegate() {
    outputs_->finish();
}

void AppDelegate::applicationWillFinishLaunching() {
    auto& preferences = vantor_.preferences();
    unfinished_.cleanUp();
    lifecycle_.readIdentity();
    lifecycle_.increaseUsages(false, false);
    lifecycle_.startMoveObservation([this] { terminate(); });
    correctMenuValues(preferences);
    if (!choices_.unattended) lifecycle_.showSpeedHintIfDue();
    intake_.setPreferredLanguages(
        preferredLanguages3Letter(vantor_.ports().host.preferredLanguages()));
    lifecycle_.listenToNotifications();
    destinations_.takeGrantedFolders();
    // A folder whose disk is away, and the menu's default, are the window's and its user's.
    if (choices_.unattended) return;
    upgradeDestinationIndex(preferences);
    destinations_.validateAtLaunch();
}

void AppDelegate::applicationWillTerminate() {
    control_.stop();
    intake_.stop();
    lifecycle_.applicationWillTerminate();
    outputs_->finish();
    vantor_.preferences().writeChanges();  // what that was to change
}

void AppDelegate::applicationIsAborting() {
    outputs_->finish();
    vantor_.preferences().writeChanges();
}

bool AppDelegate::applicationShouldHandleReopen() {
    windows_.openMainWindow();
    return false;
}

void AppDelegate::setTerminateHandler(std::function<void()> handler) {
    terminateHandler_ = std::move(handler);
}

void AppDelegate::addJob(std::unique_ptr<ConversionJob> job, bool othersWait) {
    jobOwner_.addJob(std::move(job), othersWait);
}

void AppDelegate::terminate() {
    if (terminateHandler_) dispatch_async_main(vantor_, terminateHandler_);
}

}  // namespace reelvane
