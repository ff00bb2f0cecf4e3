#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "app/outputs.h"
#include "app/queue_control.h"
#include "conversion/conversion_job.h"
#include "media/probe.h"
#include "support/dispatch.h"
#include "support/errands.h"
#include "support/observable.h"

namespace reelvane {

class Lifecycle;
class Vantor;

/// The owner of the jobs in the list, as they see it: it gives them their outputs, takes them off
/// the list, shows what they tell, counts their ends and moves the queue on. Main thread only.
class JobOwner final : public ConversionJob::Controller {
public:
    /// Where a job's wishes go.
    struct Parts {
        JobQueue& queue;
        QueueControl& control;
        QueueRest& rest;
        Lifecycle& lifecycle;
        std::shared_ptr<Outputs> outputs;  // shared with work in the background
        bool unattended = false;           ///< nobody is there to read alerts
    };
    JobOwner(Vantor& vantor, Parts parts);

    /// Puts a job into the list. It starts at once if nothing is at work, no `othersWait` and the
    /// queue is not paused.
    void addJob(std::unique_ptr<ConversionJob> job, bool othersWait);

    /// Told of every event of a job, inside the job's call.
    [[nodiscard]] Subscription observeEvents(std::function<void(const JobEvent&)> told) {
        return events_.add(std::move(told));
    }

    void removeJob(ConversionJob& job) override;
    void jobEvent(const JobEvent& event) override;
    [[nodiscard]] std::shared_ptr<OutputLease::Keeper> outputs() override { return parts_.outputs; }
    [[nodiscard]] std::shared_ptr<ConverterVersion> converterVersion() override { return version_; }
    [[nodiscard]] Turns& comparisons() override { return comparisons_; }
    void assertionLeft(PowerAssertionID assertion) override { parts_.rest.keepAwake(assertion); }
    [[nodiscard]] ConversionSettings conversionSettings() const override;

private:
    void releaseNames(const ConversionJob& job);
    void startNextJobIfIdle();
    /// What an event brings about, once the user has read its alert.
    void actOn(const JobEvent& event);
    void followRun(const JobEvent& event);
    void quitIfDone();

    Vantor& vantor_;
    Parts parts_;
    std::shared_ptr<ConverterVersion> version_;  // shared with work in the background
    Turns comparisons_;
    std::vector<std::unique_ptr<ConversionJob>> removed_;
    Observers<const JobEvent&> events_;
    Errands errands_;
};

}  // namespace reelvane
