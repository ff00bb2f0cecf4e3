#pragma once

#include <optional>
#include <unordered_map>

#include "app/job_queue.h"
#include "support/observable.h"

namespace reelvane {

/// Sums over the jobs of a batch. A job that is half done adds half of itself to what is done.
struct QueueSums {
    int timed = 0;           ///< jobs whose running time is known
    double seconds = 0;      ///< their running times
    double secondsDone = 0;  ///< of which are done
    int untimed = 0;         ///< the other jobs
    double untimedDone = 0;
};

/// The share that is done, 0 to 1, in thousandths. Jobs weigh by their running time, and one whose
/// running time is unknown as much as the others do on the average. Pure.
[[nodiscard]] double queueProgress(const QueueSums& sums);

/// How far the whole queue is, as a dock shows it. A batch is what has been in the list since it
/// last had nothing to do; its ended jobs count as done, failed ones too, even when they have left
/// the list. Kept up by every change of a job at the same small cost, whatever the length of the
/// list, and told no more often than in thousandths. Main thread only.
class QueueProgress {
public:
    explicit QueueProgress(JobQueue& queue);

    /// Absent when no job is queued, converting or paused.
    [[nodiscard]] Observable<std::optional<double>>& fraction() { return fraction_; }

private:
    /// What one job has added to the sums.
    struct Share {
        bool ended = false;
        double done = 0;  ///< 0 to 1
    };
    void join(const ConversionJob& job);
    void leave(const ConversionJob& job);
    void follow(const ConversionJob& job);
    void addDone(const ConversionJob& job, double share);
    void tell();

    QueueSums sums_;
    int open_ = 0;  ///< jobs that have not ended
    std::unordered_map<const ConversionJob*, Share> shares_;
    Observable<std::optional<double>> fraction_;
    Subscription membership_;
    Subscription changes_;
};

}  // namespace reelvane
