#include "app/queue_control.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "app/window_title.h"
#include "conversion/value_transformers.h"
#include "support/ports/translations.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

/// A warning stays until the user takes it off himself.
bool isCleanable(const ConversionJob& job) {
    return job.state() == ConversionJobState::Finished && !job.isComparing() &&
           job.warning().empty();
}

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

}  // namespace reelvane
