#include "app/job_remover.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "support/dispatch.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::chrono::milliseconds kTimeInTurn(6);

}  // namespace

JobRemover::JobRemover(Vantor& vantor, JobQueue& queue, std::function<void()> ended)
    : vantor_(vantor),
      ended_(std::move(ended)),
      subscription_(
          queue.observeMembership([this](ConversionJob& job, JobQueue::Membership membership) {
              if (membership == JobQueue::Membership::Ends) std::erase(waiting_, &job);
          })) {}

void JobRemover::remove(const std::vector<ConversionJob*>& jobs) {
    const std::unordered_set<const ConversionJob*> waiting(waiting_.begin(), waiting_.end());
    std::ranges::copy_if(jobs, std::back_inserter(waiting_),
                         [&waiting](const auto* job) { return !waiting.contains(job); });
    if (!std::exchange(removing_, true)) removeSome();
}

void JobRemover::removeSome() {
    const auto& dispatcher = vantor_.ports().dispatcher;
    const auto end = dispatcher.now() + kTimeInTurn;
    while (!waiting_.empty() && dispatcher.now() < end) {
        auto& job = *waiting_.back();
        waiting_.pop_back();
        job.remove();
    }
    if (!waiting_.empty()) {
        dispatch_async_main(vantor_, [this, alive = std::weak_ptr(alive_)] {
            if (alive.lock()) removeSome();
        });
        return;
    }
    removing_ = false;
    ended_();
}

}  // namespace reelvane
