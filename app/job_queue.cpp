#include "app/job_queue.h"

#include <algorithm>
#include <utility>

namespace reelvane {

ConversionJob& JobQueue::insertJob(std::unique_ptr<ConversionJob> job, InsertAt where) {
    return putBack(std::move(job), where == InsertAt::Top ? --topPlace_ : ++bottomPlace_);
}

std::int64_t JobQueue::placeOf(const ConversionJob& job) const {
    return watches_.at(&job).place;
}

ConversionJob& JobQueue::putBack(std::unique_ptr<ConversionJob> job, std::int64_t place) {
    auto& inserted = *job;
    const auto below = std::ranges::upper_bound(
        taskArray_, place, {}, [this](const auto& listed) { return placeOf(*listed); });
    taskArray_.insert(below, std::move(job));
    watch(inserted, place);
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
    const auto& watched = watches_.at(taken.get());
    --countOf(watched.state);
    if (watched.starting) --starting_;
    watches_.erase(taken.get());
    membership_.notify(*taken, Membership::Ends);
    return taken;
}

void JobQueue::watch(ConversionJob& job, std::int64_t place) {
    ++countOf(job.state());
    if (job.isStarting()) ++starting_;
    // The first to watch the job, so the counts are right for everybody else who does.
    watches_[&job] = {.state = job.state(),
                      .starting = job.isStarting(),
                      .place = place,
                      .subscription = job.observe([this, &job] { follow(job); })};
}

void JobQueue::follow(ConversionJob& job) {
    count(job);
    changes_.notify(job);
}

void JobQueue::count(const ConversionJob& job) {
    auto& [state, starting, place, subscription] = watches_.at(&job);
    if (state == job.state() && starting == job.isStarting()) return;
    if (starting) --starting_;
    starting = job.isStarting();
    if (starting) ++starting_;
    --countOf(state);
    state = job.state();
    ++countOf(state);
    states_.notify();
}

int& JobQueue::countOf(ConversionJobState state) {
    return counts_.at(static_cast<std::size_t>(state));
}

int JobQueue::jobCountWithState(ConversionJobState state) const {
    return counts_.at(static_cast<std::size_t>(state));
}

bool JobQueue::isAtWork() const {
    return starting_ > 0 || jobCountWithState(ConversionJobState::Converting) > 0;
}

std::vector<ConversionJob*> JobQueue::jobsAtWork() const {
    auto jobs = jobsWithState(ConversionJobState::Converting);
    for (const auto& job : taskArray_) {
        if (job->isStarting()) jobs.push_back(job.get());
    }
    return jobs;
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
