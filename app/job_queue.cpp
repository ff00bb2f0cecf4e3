#include "app/job_queue.h"

#include <algorithm>
#include <utility>

namespace reelvane {

ConversionJob& JobQueue::insertJob(std::unique_ptr<ConversionJob> job, InsertAt where) {
    auto& inserted = *job;
    taskArray_.insert(where == InsertAt::Top ? taskArray_.begin() : taskArray_.end(),
                      std::move(job));
    watch(inserted);
    membership_.notify(inserted, Membership::Begins);
    return inserted;
}

ConversionJob* JobQueue::nextRunnableJob() const {
    // Asked at every removal, often with nothing left to do.
    if (jobCountWithState(ConversionJobState::Paused) == 0 &&
        jobCountWithState(ConversionJobState::Queued) == 0) {
        return nullptr;
    }
    const auto found = std::ranges::find_if(taskArray_, [](const auto& job) {
        return job->state() == ConversionJobState::Paused ||
               job->state() == ConversionJobState::Queued;
    });
    return found == taskArray_.end() ? nullptr : found->get();
}

std::unique_ptr<ConversionJob> JobQueue::takeJob(const ConversionJob& job) {
    const auto found = std::ranges::find(taskArray_, &job, &std::unique_ptr<ConversionJob>::get);
    if (found == taskArray_.end()) return nullptr;
    auto taken = std::move(*found);
    taskArray_.erase(found);
    --countOf(watches_.at(taken.get()).state);
    watches_.erase(taken.get());
    membership_.notify(*taken, Membership::Ends);
    return taken;
}

void JobQueue::watch(ConversionJob& job) {
    ++countOf(job.state());
    // The first to watch the job, so the counts are right for everybody else who does.
    watches_[&job] = {.state = job.state(),
                      .subscription = job.observe([this, &job] { follow(job); })};
}

void JobQueue::follow(ConversionJob& job) {
    count(job);
    changes_.notify(job);
}

void JobQueue::count(const ConversionJob& job) {
    auto& counted = watches_.at(&job).state;
    if (counted == job.state()) return;
    --countOf(counted);
    counted = job.state();
    ++countOf(counted);
    states_.notify();
}

int& JobQueue::countOf(ConversionJobState state) {
    return counts_.at(static_cast<std::size_t>(state));
}

int JobQueue::jobCountWithState(ConversionJobState state) const {
    return counts_.at(static_cast<std::size_t>(state));
}

std::vector<ConversionJob*> JobQueue::jobsWithState(ConversionJobState state) const {
    std::vector<ConversionJob*> jobs;
    for (const auto& job : taskArray_) {
        if (job->state() == state) jobs.push_back(job.get());
    }
    return jobs;
}

Subscription JobQueue::observeMembership(std::function<void(ConversionJob&, Membership)> changed) {
    return membership_.add(std::move(changed));
}

Subscription JobQueue::observeStates(std::function<void()> changed) {
    return states_.add(std::move(changed));
}

Subscription JobQueue::observeJobs(std::function<void(ConversionJob&)> changed) {
    return changes_.add(std::move(changed));
}

}  // namespace reelvane
