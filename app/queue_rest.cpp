#include "app/queue_rest.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "app/file_intake.h"
#include "app/job_queue.h"
#include "app/queue_control.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::chrono::seconds kAwakeAfterWork(60);

}  // namespace

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

}  // namespace reelvane
