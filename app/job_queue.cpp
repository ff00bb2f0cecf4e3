#include "app/job_queue.h"

#include <algorithm>
#include <utility>

namespace reelvane {

ConversionJob& JobQueue::insertJob(std::unique_ptr<ConversionJob> job, InsertAt where) {
    auto& inserted = *job;
    willChange_.notify();
    taskArray_.insert(where == InsertAt::Top ? taskArray_.begin() : taskArray_.end(),
                      std::move(job));
    didChange_.notify();
    return inserted;
}

ConversionJob* JobQueue::nextRunnableJob() const {
    const auto found = std::ranges::find_if(taskArray_, [](const auto& job) {
        return job->state() == ConversionJobState::Paused ||
               job->state() == ConversionJobState::Queued;
    });
    return found == taskArray_.end() ? nullptr : found->get();
}

std::unique_ptr<ConversionJob> JobQueue::takeJob(const ConversionJob& job) {
    const auto found = std::ranges::find(taskArray_, &job, &std::unique_ptr<ConversionJob>::get);
    if (found == taskArray_.end()) return nullptr;
    willChange_.notify();
    auto taken = std::move(*found);
    taskArray_.erase(found);
    didChange_.notify();
    return taken;
}

int JobQueue::jobCountWithState(ConversionJobState state) const {
    return static_cast<int>(
        std::ranges::count(taskArray_, state, [](const auto& job) { return job->state(); }));
}

std::vector<ConversionJob*> JobQueue::jobsWithState(ConversionJobState state) const {
    std::vector<ConversionJob*> jobs;
    for (const auto& job : taskArray_) {
        if (job->state() == state) jobs.push_back(job.get());
    }
    return jobs;
}

Subscription JobQueue::observeTaskArray(std::function<void()> willChange,
                                        std::function<void()> didChange) {
    // One handle for both lists; shared because a call-back must be copyable.
    auto both = std::make_shared<std::pair<Subscription, Subscription>>(
        willChange_.add(std::move(willChange)), didChange_.add(std::move(didChange)));
    return Subscription([both] { *both = {}; });
}

}  // namespace reelvane
