#include "app/queue_control.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

#include "app/file_intake.h"
#include "app/job_queue.h"
#include "conversion/conversion_settings.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

/// A warning stays until the user takes it off himself.
bool isCleanable(const ConversionJob& job) {
    return job.state() == ConversionJobState::Finished && !job.isComparing() &&
           job.warning().empty();
}

constexpr std::chrono::seconds kAwakeAfterWork(60);

}  // namespace

QueueControl::QueueControl(Vantor& vantor, JobQueue& queue)
    : vantor_(vantor),
      queue_(queue),
      remover_(vantor, queue, [this] { jobsTaken(); }),
      states_(queue.observeStates([this] { updateWindowTitle(); })) {
    showTexts();
    updateWindowTitle();
}

void QueueControl::startNextJobInQueue() {
    // What several are removed for goes on when all are gone, and did so when what ends now left.
    if (remover_.isRemoving() || remover_.isEnding()) return;
    // One that was paused too late to be stopped, or that the user started, may still be at work.
    if (paused_ || stopped_ || queue_.isAtWork()) return;
    auto* const job = queue_.nextRunnableJob();
    if (job == nullptr) return;
    if (job->state() == ConversionJobState::Paused) {
        job->continueJob();
    } else {
        job->start();
    }
}

void QueueControl::stop() {
    stopped_ = true;
    remover_.finish();
}

bool QueueControl::canContinue(const ConversionJob& job) const {
    const auto state = static_cast<std::int32_t>(job.state());
    return StatusNotRunningValueTransformer::transformedValue(state) != 0 &&
           StatusNotFinishedValueTransformer::transformedValue(state) != 0 && !queue_.isAtWork();
}

void QueueControl::continueJob(ConversionJob& job) const {
    if (!canContinue(job)) return;
    job.continueJob();
}

void QueueControl::togglePause() {
    if (paused_) {
        paused_ = false;
        startNextJobInQueue();
    } else {
        for (auto* const job : queue_.jobsAtWork()) job->pause();
        paused_ = true;
    }
    showTexts();
    updateWindowTitle();
}

void QueueControl::jobWentOn() {
    if (paused_) {
        paused_ = false;
        showTexts();
    }
    updateWindowTitle();
}

void QueueControl::removeJobs(const std::vector<ConversionJob*>& jobs) {
    remover_.remove(jobs);
}

void QueueControl::jobsTaken() {
    updateWindowTitle();
    startNextJobInQueue();
}

void QueueControl::undoRemoval() {
    auto* const wasAtWork = remover_.undo();
    updateWindowTitle();
    if (wasAtWork != nullptr && !paused_) continueJob(*wasAtWork);
}

void QueueControl::cleanClicked() {
    removeJobs(cleanableJobs());
}

std::vector<ConversionJob*> QueueControl::cleanableJobs() const {
    auto jobs = queue_.jobsWithState(ConversionJobState::Finished);
    std::erase_if(jobs, [](const ConversionJob* job) { return !isCleanable(*job); });
    return jobs;
}

bool QueueControl::canCleanUp() const {
    return queue_.jobCountWithState(ConversionJobState::Finished) > 0 &&
           std::ranges::any_of(queue_.taskArray(),
                               [](const auto& job) { return isCleanable(*job); });
}

void QueueControl::showTexts() {
    const auto& translations = vantor_.ports().translations;
    pauseImage_.set(std::string(paused_ ? kResumeImage : kPauseImage));
    pauseTitle_.set(paused_ ? translations.localized("Resume Queue")
                            : translations.localized("Pause Queue"));
    addButtonTitle_.set(paused_ ? translations.localized("Add to Queue")
                                : translations.localized("Start Conversion"));
}

void QueueControl::updateWindowTitle() {
    if (remover_.isRemoving()) return;  // once, when all are gone
    windowTitle_.set(
        reelvane::windowTitle(vantor_.ports().translations, vantor_.appName(),
                              {.paused = paused_,
                               .jobs = queue_.taskArray().size(),
                               .queued = queue_.jobCountWithState(ConversionJobState::Queued)}));
}

QueueRest::QueueRest(Vantor& vantor, JobQueue& queue, QueueControl& control, FileIntake& intake,
                     std::function<void()> terminate)
    : vantor_(vantor),
      queue_(queue),
      control_(control),
      intake_(intake),
      terminate_(std::move(terminate)),
      errands_(vantor.ports().dispatcher) {
    subscriptions_.push_back(queue.observeStates([this] { followStates(); }));
    subscriptions_.push_back(queue.observeMembership(
        [this](ConversionJob& /*job*/, JobQueue::Membership /*change*/) { followStates(); }));
    subscriptions_.push_back(control.pauseTitle().observe([this] { lookLater(); }));
    subscriptions_.push_back(control.undoableRemoval().observe([this] { lookLater(); }));
    subscriptions_.push_back(intake.waitingCount().observe([this] {
        filesTaken_ = true;
        lookLater();
    }));
    subscriptions_.push_back(intake.observeIdle([this] { intakeIdle(); }));
}

void QueueRest::intakeIdle() {
    lookLater();
    if (intake_.isBusy() || !std::exchange(filesTaken_, false)) return;
    // Jobs that were added before the last file left have waited for it.
    control_.startNextJobInQueue();
}

void QueueRest::followStates() {
    const int paused = queue_.jobCountWithState(ConversionJobState::Paused);
    const bool atWork = queue_.isAtWork();
    if (std::exchange(wasAtWork_, atWork) != atWork) jobWasPaused_ = paused > paused_;
    paused_ = paused;
    lookLater();
}

void QueueRest::lookLater() {
    if (std::exchange(looking_, true)) return;
    // What moves the queue on takes several steps, of which each one alone would look like rest.
    errands_.later([this] {
        looking_ = false;
        look();
    });
}

void QueueRest::look() {
    followSleep();
    // A single movie that the user has paused stops no queue.
    const bool waits =
        queue_.jobCountWithState(ConversionJobState::Queued) > 0 || (paused_ > 0 && !jobWasPaused_);
    hasStopped_.set(waits && !queue_.isAtWork() && !control_.paused() && !control_.isRemoving() &&
                    !intake_.isBusy());
    if (std::exchange(quitDue_, false)) quitIfDone();
}

void QueueRest::quitIfDone() {
    const bool isDone =
        !queue_.isAtWork() && queue_.jobCountWithState(ConversionJobState::Queued) == 0 &&
        queue_.jobCountWithState(ConversionJobState::Paused) == 0 &&
        queue_.jobCountWithState(ConversionJobState::Failed) == 0 &&
        !std::ranges::any_of(queue_.taskArray(),
                             [](const auto& job) { return !job->warning().empty(); }) &&
        intake_.refusedFiles().list().empty();
    if (!isDone) return;
    quitDue_ = intake_.isBusy() || control_.undoableRemoval().get().has_value();
    if (!quitDue_) terminate_();
}

void QueueRest::keepAwake(PowerAssertionID assertion) {
    assertions_.push_back(assertion);
    lookLater();
}

void QueueRest::followSleep() {
    if (queue_.isAtWork() || assertions_.empty()) {
        sleepTime_.reset();
        return;
    }
    if (sleepTime_) return;
    sleepTime_ = vantor_.ports().dispatcher.every(kAwakeAfterWork, [this] {
        for (const auto assertion : std::exchange(assertions_, {})) {
            vantor_.ports().powerAssertions.release(assertion);
        }
        sleepTime_.reset();
    });
}

std::string windowTitle(const Translations& translations, std::string_view appName,
                        const QueueSummary& queue) {
    const auto pause = queue.paused ? translations.localized(" (Paused)") : std::string(" ");
    const auto jobs = queue.jobs == 0
                          ? std::string()
                          : makeString(translations.localized(" [%li Job(s), %li Queued]"),
                                       queue.jobs, queue.queued);
    return makeString("%@%@%@", appName, pause, jobs);
}

}  // namespace reelvane
