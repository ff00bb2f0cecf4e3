#include "ui/job_remover.h"

#include <algorithm>

#include <QElapsedTimer>

namespace reelvane {
namespace {

constexpr qint64 kMillisecondsInTurn = 6;

}  // namespace

JobRemover::JobRemover(JobQueue& queue)
    : subscription_(
          queue.observeMembership([this](ConversionJob& job, JobQueue::Membership membership) {
              if (membership == JobQueue::Membership::Ends) std::erase(waiting_, &job);
          })) {
    turn_.setInterval(0);
    QObject::connect(&turn_, &QTimer::timeout, &turn_, [this] { removeSome(); });
}

void JobRemover::remove(const std::vector<ConversionJob*>& jobs) {
    // One that waits twice is forgotten twice when it leaves.
    waiting_.insert(waiting_.end(), jobs.begin(), jobs.end());
    removeSome();
}

void JobRemover::removeSome() {
    QElapsedTimer time;
    time.start();
    while (!waiting_.empty() && time.elapsed() < kMillisecondsInTurn) takeNext().remove();
    if (waiting_.empty()) {
        turn_.stop();
    } else if (!turn_.isActive()) {
        turn_.start();
    }
}

ConversionJob& JobRemover::takeNext() {
    // The one that converts goes last, or the next in the list would start, to be removed in its
    // turn.
    const auto idle = std::find_if(waiting_.rbegin(), waiting_.rend(), [](const auto* job) {
        return job->state() != ConversionJobState::Converting;
    });
    const auto next = idle == waiting_.rend() ? std::prev(waiting_.end()) : std::prev(idle.base());
    auto& job = **next;
    waiting_.erase(next);
    return job;
}

}  // namespace reelvane
