#pragma once

#include <memory>
#include <optional>
#include <stop_token>
#include <string_view>
#include <utility>
#include <variant>

#include "conversion/conversion_settings.h"
#include "conversion/output_lease.h"
#include "conversion/progress_file.h"
#include "conversion/source_removal.h"
#include "conversion/status_line.h"
#include "support/errands.h"
#include "support/ports/child_process.h"
#include "support/ports/dispatcher.h"
#include "support/ports/power_assertions.h"

namespace reelvane {

/// Keeps the machine awake as long as it exists. Main thread only.
class SleepAssertion {
public:
    SleepAssertion(PowerAssertions& power, std::string_view name)
        : power_(&power),
          id_(power.create(name)) {}
    SleepAssertion(SleepAssertion&& other) noexcept
        : power_(other.power_),
          id_(std::exchange(other.id_, kNoPowerAssertion)) {}
    SleepAssertion& operator=(SleepAssertion&& other) noexcept {
        std::swap(power_, other.power_);
        std::swap(id_, other.id_);
        return *this;
    }
    SleepAssertion(const SleepAssertion&) = delete;
    SleepAssertion& operator=(const SleepAssertion&) = delete;
    ~SleepAssertion() {
        if (id_ != kNoPowerAssertion) power_->release(id_);
    }

    /// From here on somebody else has to give it back.
    [[nodiscard]] PowerAssertionID leave() { return std::exchange(id_, kNoPowerAssertion); }

private:
    PowerAssertions* power_;
    PowerAssertionID id_;
};

/// What a phase asks the disks. With the phase its answers are dropped and the work is told to
/// stop.
struct DiskWork {
    explicit DiskWork(Dispatcher& dispatcher) : errands(dispatcher) {}
    DiskWork(DiskWork&&) noexcept = default;
    DiskWork& operator=(DiskWork&&) = delete;
    DiskWork(const DiskWork&) = delete;
    DiskWork& operator=(const DiskWork&) = delete;
    ~DiskWork() { stop.request_stop(); }

    Errands errands;
    std::stop_source stop{};
};

// The phases of a job. Each owns what lives as long as it does.

struct QueuedJob {
    /// Of a start that nobody waits for any more, until what it has made is gone again.
    std::optional<DiskWork> abandoned{};
};

/// The disks are asked what has to be known before the converter is launched.
struct StartingJob {
    DiskWork disks;
    SleepAssertion awake;
    OutputLease lease{};  ///< once they have answered
};

/// The converter runs, or is suspended.
struct RunningJob {
    struct Following {
        std::unique_ptr<Timer> timer{};
        SleepAssertion awake;
    };

    OutputLease lease{};
    ProgressReader progress{};
    std::unique_ptr<ChildProcess> child{};
    std::optional<Following> following{};  ///< absent: the child is suspended
};

/// The run has ended well, and its output is read back and put into its place.
struct CheckingJob {
    /// A run can end just before it is suspended; it is called Paused until it is to go on.
    ConversionJobState shown = ConversionJobState::Converting;
    ConversionSettings settings{};  ///< at the end of the run
    OutputLease lease{};
    DiskWork disks;
};

struct FinishedJob {
    std::unique_ptr<SourceRemover> comparison{};  ///< before the source may go
};

struct FailedJob {};

/// The job has left the list for good.
struct RemovedJob {
    ConversionJobState last = ConversionJobState::Queued;
};

using JobPhase = std::variant<QueuedJob, StartingJob, RunningJob, CheckingJob, FinishedJob,
                              FailedJob, RemovedJob>;

[[nodiscard]] ConversionJobState stateOf(const JobPhase& phase);

}  // namespace reelvane
