#pragma once

#include <memory>
#include <vector>

#include "app/outputs.h"
#include "app/queue_control.h"
#include "conversion/conversion_job.h"
#include "media/probe.h"
#include "support/dispatch.h"
#include "support/errands.h"

namespace reelvane {

class Lifecycle;
class Vantor;

/// The owner of the jobs in the list, as they see it: it gives them their outputs, takes them off
/// the list, counts their ends and moves the queue on. Main thread only.
class JobOwner final : public ConversionJob::Controller {
public:
    /// Where a job's wishes go.
    struct Parts {
        JobQueue& queue;
        QueueControl& control;
        QueueRest& rest;
        Lifecycle& lifecycle;
        std::shared_ptr<Outputs> outputs;  // shared with work in the background
    };
    JobOwner(Vantor& vantor, Parts parts);

    /// Puts a job into the list. It starts at once if nothing is at work, no `othersWait` and the
    /// queue is not paused.
    void addJob(std::unique_ptr<ConversionJob> job, bool othersWait);

    void removeJob(ConversionJob& job) override;
    void startNextJobInQueue() override { parts_.control.startNextJobInQueue(); }
    void pauseContinueClicked() override { parts_.control.jobWentOn(); }
    [[nodiscard]] bool isAtWork() const override { return parts_.queue.isAtWork(); }
    [[nodiscard]] std::shared_ptr<OutputLease::Keeper> outputs() override { return parts_.outputs; }
    [[nodiscard]] std::shared_ptr<ConverterVersion> converterVersion() override { return version_; }
    [[nodiscard]] Turns& comparisons() override { return comparisons_; }
    void conversionEnded(bool succeeded) override;
    void quitIfDone() override;
    void assertionLeft(PowerAssertionID assertion) override { parts_.rest.keepAwake(assertion); }
    [[nodiscard]] ConversionSettings conversionSettings() const override;

private:
    void releaseNames(const ConversionJob& job);

    Vantor& vantor_;
    Parts parts_;
    std::shared_ptr<ConverterVersion> version_;  // shared with work in the background
    Turns comparisons_;
    std::vector<std::unique_ptr<ConversionJob>> removed_;
    Errands errands_;
};

}  // namespace reelvane
