#pragma once

#include <memory>
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
    [[nodiscard]] int jobCountWithState(ConversionJobState state) const;
    [[nodiscard]] std::vector<ConversionJob*> jobsWithState(ConversionJobState state) const;

    /// Told before and after every change of the list's membership.
    [[nodiscard]] Subscription observeTaskArray(std::function<void()> willChange,
                                                std::function<void()> didChange);

private:
    std::vector<std::unique_ptr<ConversionJob>> taskArray_;
    Observers<> willChange_;
    Observers<> didChange_;
};

}  // namespace reelvane
