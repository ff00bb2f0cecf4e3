#include "app/app_delegate.h"

#include <utility>

#include "app/preference_table.h"
#include "app/settings_reader.h"
#include "media/languages.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/localization.h"
#include "support/paths.h"
#include "support/ports/folder_access.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/vantor.h"

namespace reelvane {

AppDelegate::AppDelegate(Vantor& vantor, RunChoices choices)
    : vantor_(vantor),
      choices_(std::move(choices)),
      outputs_(std::make_shared<Outputs>(vantor, names_)),
      version_(std::make_shared<ConverterVersion>(
          vantor.ports().processLauncher, vantor.ports().mainBundle.pathForResource("ffmpeg"))),
      unfinished_(vantor),
      retired_(vantor),
      control_(vantor, queue_),
      destinations_(vantor),
      intake_(vantor, *this, destinations_, names_, choices_),
      lifecycle_(vantor, queue_),
      rest_(vantor, queue_, control_, intake_, [this] { terminate(); }),
      retakenMovies_(intake_.turn().observe([this] {
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
    selectConversionStyle();
    destinations_.takeGrantedFolders();
    // A folder whose disk is away, and the menu's default, are the window's and its user's.
    if (choices_.unattended) return;
    upgradeDestinationIndex(preferences);
    destinations_.validateAtLaunch();
}

bool AppDelegate::applicationShouldTerminate() {
    return lifecycle_.applicationShouldTerminate();
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
    openMainWindow();
    return false;
}

void AppDelegate::setTerminateHandler(std::function<void()> handler) {
    terminateHandler_ = std::move(handler);
}

void AppDelegate::openFiles(const std::vector<std::filesystem::path>& paths) {
    intake_.openFiles(paths);
}

void AppDelegate::addJob(std::unique_ptr<ConversionJob> job) {
    // What a job will read is no more to be written over than what another one will write.
    names_->promise(job->fileInfo().fileURL);
    if (!paused() && !isAtWork() && !intake_.hasWaitingFiles()) job->start();
    const bool atBottom = get(vantor_.preferences(), kInsertJobsAtBottom);
    queue_.insertJob(std::move(job),
                     atBottom ? JobQueue::InsertAt::Bottom : JobQueue::InsertAt::Top);
    intake_.cancelAdd();
    updateWindowTitle();
    intake_.clearFileInfo();
}

void AppDelegate::releaseNames(const ConversionJob& job) {
    names_->release(job.fileInfo().fileURL);
    if (job.finishedOK() || job.finishedError()) return;  // it has given its output's name back
    if (const auto& destination = job.fileInfo().destinationURL) names_->release(*destination);
}

void AppDelegate::removeJobs(const std::vector<ConversionJob*>& jobs) {
    control_.removeJobs(jobs);
}

void AppDelegate::cleanClicked() {
    control_.cleanClicked();
}

void AppDelegate::togglePause() {
    control_.togglePause();
}

void AppDelegate::continueJob(ConversionJob& job) {
    control_.continueJob(job);
}

void AppDelegate::openMainWindow() {
    windowRequests_.notify({.kind = WindowRequest::Kind::Main});
}

void AppDelegate::openDocumentationWindow(std::optional<int> tab) {
    const bool namesTab = tab && *tab >= 0;
    windowRequests_.notify(
        {.kind = WindowRequest::Kind::Documentation, .tab = namesTab ? tab : std::nullopt});
}

void AppDelegate::openPromotion() {
    windowRequests_.notify({.kind = WindowRequest::Kind::Promotion});
}

void AppDelegate::preferencesWindowWillClose() {
    vantor_.preferences().synchronize();
}

void AppDelegate::selectConversionStyle() {
    conversionStyle_.set(conversionPresetOf(get(vantor_.preferences(), kConversionPreset)));
}

Subscription AppDelegate::observeWindowRequests(std::function<void(const WindowRequest&)> open) {
    return windowRequests_.add(std::move(open));
}

void AppDelegate::removeJob(ConversionJob& job) {
    releaseNames(job);
    retired_.retire(queue_.takeJob(job));
    updateWindowTitle();
}

void AppDelegate::startNextJobInQueue() {
    control_.startNextJobInQueue();
}

void AppDelegate::pauseContinueClicked() {
    control_.jobWentOn();
}

void AppDelegate::conversionEnded(bool succeeded) {
    if (!succeeded) return;
    vantor_.preferences().addToInt(kConvertedFileCount.key, 1);
    lifecycle_.increaseUsages(true, true);
}

void AppDelegate::quitIfDone() {
    if (conversionSettings().quitAfterConversion && comparisons_.isIdle()) rest_.quitIfDone();
}

ConversionSettings AppDelegate::conversionSettings() const {
    return readConversionSettings(vantor_.preferences());
}

void AppDelegate::terminate() {
    if (terminateHandler_) dispatch_async_main(vantor_, terminateHandler_);
}

void AppDelegate::updateWindowTitle() {
    control_.updateWindowTitle();
}

void AppDelegate::bringToFront() {
    openMainWindow();
}

}  // namespace reelvane
