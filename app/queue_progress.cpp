#include "app/queue_progress.h"

#include <algorithm>
#include <cmath>

namespace reelvane {
namespace {

constexpr double kSteps = 1000;

bool hasEnded(const ConversionJob& job) {
    return job.state() == ConversionJobState::Finished || job.state() == ConversionJobState::Failed;
}

double doneOf(const ConversionJob& job) {
    return hasEnded(job) ? 1 : std::clamp(job.progress() / 100, 0.0, 1.0);
}

/// Absent when it is unknown.
std::optional<int> runningTime(const ConversionJob& job) {
    const auto seconds = job.fileInfo().runtimeSeconds;
    return seconds.value_or(0) > 0 ? seconds : std::nullopt;
}

void addJob(QueueSums& sums, const ConversionJob& job, int count) {
    if (const auto seconds = runningTime(job)) {
        sums.timed += count;
        sums.seconds += *seconds * count;
    } else {
        sums.untimed += count;
    }
}

}  // namespace

double queueProgress(const QueueSums& sums) {
    const double average = sums.timed > 0 ? sums.seconds / sums.timed : 1;
    const double all = sums.seconds + sums.untimed * average;
    if (all <= 0) return 0;
    const double share = (sums.secondsDone + sums.untimedDone * average) / all;
    return std::floor(std::clamp(share, 0.0, 1.0) * kSteps) / kSteps;
}

QueueProgress::QueueProgress(JobQueue& queue)
    : membership_(
          queue.observeMembership([this](ConversionJob& job, JobQueue::Membership membership) {
              if (membership == JobQueue::Membership::Begins) {
                  join(job);
              } else {
                  leave(job);
              }
          })),
      changes_(queue.observeJobs([this](ConversionJob& job) { follow(job); })) {
    for (const auto& job : queue.taskArray()) join(*job);
}

void QueueProgress::join(const ConversionJob& job) {
    // Back in the list it counts as it did when it left.
    if (hasEnded(job)) return;
    ++open_;
    const auto done = doneOf(job);
    shares_[&job] = {.done = done};
    addJob(sums_, job, 1);
    addDone(job, done);
    tell();
}

void QueueProgress::leave(const ConversionJob& job) {
    const auto found = shares_.find(&job);
    if (found == shares_.end()) return;
    const auto share = found->second;
    shares_.erase(found);
    if (share.ended) return;
    --open_;
    addJob(sums_, job, -1);
    addDone(job, -share.done);
    tell();
}

void QueueProgress::follow(const ConversionJob& job) {
    const auto found = shares_.find(&job);
    if (found == shares_.end()) return;
    auto& share = found->second;
    if (!share.ended && hasEnded(job)) {
        share.ended = true;
        --open_;
    }
    addDone(job, doneOf(job) - share.done);
    share.done = doneOf(job);
    tell();
}

void QueueProgress::addDone(const ConversionJob& job, double share) {
    const auto seconds = runningTime(job);
    (seconds ? sums_.secondsDone : sums_.untimedDone) += share * seconds.value_or(1);
}

void QueueProgress::tell() {
    if (open_ > 0) {
        fraction_.set(queueProgress(sums_));
        return;
    }
    sums_ = {};
    shares_.clear();
    fraction_.set(std::nullopt);
}

}  // namespace reelvane
