#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "conversion/conversion_job.h"
#include "support/observable.h"

namespace reelvane {

/// The ordered job list and the rules that pick from it; it starts nothing. Main thread only.
class JobQueue {
public:
    enum class InsertAt { Top, Bottom };

    /// Index 0 is the top row.
    [[nodiscard]] const std::vector<std::unique_ptr<ConversionJob>>& taskArray() const {
        return taskArray_;
    }
    ConversionJob& insertJob(std::unique_ptr<ConversionJob> job, InsertAt where);
    /// The first paused or queued job in list order, or null.
    [[nodiscard]] ConversionJob* nextRunnableJob() const;
    [[nodiscard]] std::unique_ptr<ConversionJob> takeJob(const ConversionJob& job);
    /// Where a job of the list stands; it stays the same whatever becomes of the others.
    [[nodiscard]] std::int64_t placeOf(const ConversionJob& job) const;
    /// Inserts a job that was taken where it stood.
    ConversionJob& putBack(std::unique_ptr<ConversionJob> job, std::int64_t place);
    /// Costs the same whatever the length of the list.
    [[nodiscard]] int jobCountWithState(ConversionJobState state) const;
    [[nodiscard]] std::vector<ConversionJob*> jobsWithState(ConversionJobState state) const;
    /// True while a job converts or is starting. Costs the same whatever the length of the list.
    [[nodiscard]] bool isAtWork() const;
    /// Those that convert or are starting.
    [[nodiscard]] std::vector<ConversionJob*> jobsAtWork() const;

    enum class Membership { Begins, Ends };
    /// Told which job has come into the list or left it.
    [[nodiscard]] Subscription observeMembership(
        std::function<void(ConversionJob&, Membership)> changed);
    /// Told after the state of a job in the list has changed, or that it is starting, and with it
    /// the counts.
    [[nodiscard]] Subscription observeStates(std::function<void()> changed);
    /// Told after every change that a job in the list tells of, when the counts are right again.
    /// One subscription for all jobs: the cost does not grow with the list.
    [[nodiscard]] Subscription observeJobs(std::function<void(ConversionJob&)> changed);

private:
    /// Keeps the counts in step with one job's state.
    struct Watch {
        ConversionJobState state = ConversionJobState::Queued;  ///< as it is counted
        bool starting = false;                                  ///< as it is counted
        std::int64_t place = 0;                                 ///< grows from the top down
        Subscription subscription{};
    };
    void watch(ConversionJob& job, std::int64_t place);
    void follow(ConversionJob& job);
    void count(const ConversionJob& job);
    [[nodiscard]] int& countOf(ConversionJobState state);

    std::vector<std::unique_ptr<ConversionJob>> taskArray_;
    std::unordered_map<const ConversionJob*, Watch> watches_;
    std::array<int, kConversionJobStateWords.size()> counts_{};
    int starting_ = 0;
    std::int64_t topPlace_ = 0;     ///< the least that was given so far
    std::int64_t bottomPlace_ = 0;  ///< the greatest
    Observers<ConversionJob&, Membership> membership_;
    Observers<> states_;
    Observers<ConversionJob&> changes_;
};

}  // namespace reelvane
