#include "app/queue_control.h"

#include <cstdint>
#include <utility>

#include "app/window_title.h"
#include "conversion/value_transformers.h"
#include "support/ports/translations.h"
#include "support/vantor.h"

namespace reelvane {

QueueControl::QueueControl(Vantor& vantor, JobQueue& queue)
    : vantor_(vantor),
      queue_(queue),
      remover_(vantor, queue, [this] { jobsRemoved(); }) {
    showTexts();
    updateWindowTitle();
}

void QueueControl::startNextJobInQueue() {
    if (remover_.isRemoving()) {
        startDue_ = true;
        return;
    }
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

void QueueControl::jobsRemoved() {
    updateWindowTitle();
    if (std::exchange(startDue_, false)) startNextJobInQueue();
}

void QueueControl::cleanClicked() {
    removeJobs(queue_.jobsWithState(ConversionJobState::Finished));
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
