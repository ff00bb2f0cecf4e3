#include "app/app_delegate.h"

#include <utility>

#include "app/launch_corrections.h"
#include "app/preference_keys.h"
#include "app/settings_reader.h"
#include "media/languages.h"
#include "support/alerts.h"
#include "support/bundle.h"
#include "support/dispatch.h"
#include "support/paths.h"
#include "support/ports/folder_access.h"
#include "support/ports/host.h"
#include "support/vantor.h"

namespace reelvane {

AppDelegate::AppDelegate(Vantor& vantor, RunChoices choices)
    : vantor_(vantor),
      choices_(std::move(choices)),
      removals_(vantor),
      unfinished_(vantor),
      retired_(vantor),
      control_(vantor, queue_),
      destinations_(vantor),
      intake_(vantor, *this, destinations_, names_, choices_),
      lifecycle_(vantor, queue_) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationWillFinishLaunching() {
    auto& preferences = vantor_.preferences();
    unfinished_.cleanUp();
    lifecycle_.readIdentity();
    lifecycle_.increaseUsages(false, false);
    lifecycle_.startMoveObservation([this] { terminate(); });
    correctMenuValues(preferences);
    lifecycle_.showSpeedHintIfDue();
    intake_.setPreferredLanguages(
        preferredLanguages3Letter(vantor_.ports().host.preferredLanguages()));
    lifecycle_.listenToNotifications();
    selectConversionStyle();
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
    removals_.finish();
    vantor_.preferences().writeChanges();  // what the removals were to change
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

void AppDelegate::addJob(std::unique_ptr<ConversionJob> job, bool isWriteable) {
    // What a job will read is no more to be written over than what another one will write.
    names_->promise(job->fileInfo().fileURL);
    if (!isWriteable) {
        refuseUnwritable(std::move(job));
        return;
    }
    if (!paused() && !isAtWork() && !intake_.hasWaitingFiles()) job->start();
    const bool atBottom = vantor_.preferences().defaultInt(kInsertJobsAtBottomKey) != 0;
    queue_.insertJob(std::move(job),
                     atBottom ? JobQueue::InsertAt::Bottom : JobQueue::InsertAt::Top);
    intake_.cancelAdd();
    updateWindowTitle();
    intake_.clearFileInfo();
}

void AppDelegate::refuseUnwritable(std::unique_ptr<ConversionJob> job) {
    const auto source = job->fileInfo().fileURL;
    releaseNames(*job);
    if (const auto& folder = job->fileInfo().securityURL) {
        vantor_.ports().folderAccess.stopAccessing(*folder);
    }
    const VettingAlert alert{
        .title = vantor_.appName(),
        .message = localized(vantor_,
                             "You don't seem to have write access to the selected destinatation or "
                             "it is a read-only filesystem. Please choose another destination."),
        .button = "OK"};
    intake_.refuse(source, {alert});
    intake_.cancelAdd();
    bringToFront();
    alert_apptitled(vantor_, alert.message, alert.button);
}

void AppDelegate::releaseNames(const ConversionJob& job) {
    names_->release(job.fileInfo().fileURL);
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
    conversionStyle_.set(
        conversionStyleView(vantor_.preferences().defaultInt(kConversionPresetKey)));
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

int AppDelegate::jobCountWithState(ConversionJobState state) const {
    return queue_.jobCountWithState(state);
}

void AppDelegate::pauseContinueClicked() {
    control_.jobWentOn();
}

OutputPlaces AppDelegate::outputPlaces() {
    return {
        .claim = [names = names_](MKVFileInfo& record) { names->claim(record); },
        .hold = [names = names_](const std::filesystem::path& path) { names->promise(path); },
        .release = [names = names_](const std::filesystem::path& path) { names->release(path); }};
}

void AppDelegate::outputBegun(const std::filesystem::path& output, const std::string& outputMark,
                              const std::filesystem::path& progressFile) {
    unfinished_.begin(output, outputMark, progressFile);
}

void AppDelegate::discardOutput(const std::filesystem::path& output,
                                const std::filesystem::path& source) {
    // Nobody gets the path before the file is gone, or he would lose his own.
    names_->promise(output);
    removals_.remove([output, source] { deleteUnlessSource(output, source); },
                     [this, output] {
                         names_->release(output);
                         unfinished_.settle(output);
                     });
}

void AppDelegate::deleteSource(const std::filesystem::path& source) {
    names_->promise(source);
    removals_.remove([source] { Fennimar::removeFile(source); },
                     [this, source] { names_->release(source); });
}

void AppDelegate::outputSettled(const std::filesystem::path& output) {
    unfinished_.settle(output);
}

void AppDelegate::conversionEnded() {
    vantor_.preferences().addToInt(kConvertedFileCountKey, 1);
    lifecycle_.increaseUsages(true, true);
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
