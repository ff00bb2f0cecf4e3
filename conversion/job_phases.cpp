#include "conversion/job_phases.h"

namespace reelvane {

namespace {

struct StateOf {
    using State = ConversionJobState;

    State operator()(const QueuedJob& /*phase*/) const { return State::Queued; }
    State operator()(const StartingJob& /*phase*/) const { return State::Queued; }
    State operator()(const RunningJob& phase) const {
        return phase.following ? State::Converting : State::Paused;
    }
    State operator()(const CheckingJob& phase) const { return phase.shown; }
    State operator()(const FinishedJob& /*phase*/) const { return State::Finished; }
    State operator()(const FailedJob& /*phase*/) const { return State::Failed; }
    State operator()(const RemovedJob& phase) const { return phase.last; }
};

}  // namespace

ConversionJobState stateOf(const JobPhase& phase) {
    return std::visit(StateOf(), phase);
}

}  // namespace reelvane
