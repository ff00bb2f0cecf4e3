#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "support/errands.h"
#include "support/observable.h"
#include "support/ports/dispatcher.h"
#include "support/ports/power_assertions.h"

namespace reelvane {

class FileIntake;
class JobQueue;
class QueueControl;
class Vantor;

/// Sees when the queue comes to rest, and does what is due then. Main thread only.
class QueueRest {
public:
    /// `terminate` ends the program as soon as the present call is over.
    QueueRest(Vantor& vantor, JobQueue& queue, QueueControl& control, FileIntake& intake,
              std::function<void()> terminate);

    /// Movies wait, and nothing will start them unless the user does.
    [[nodiscard]] Observable<bool>& hasStopped() { return hasStopped_; }

    /// A run has ended, and the user wants to quit after the conversions. It waits as long as a
    /// movie is being taken in or could come back; with a failure, a refused file or a waiting job
    /// to be seen the program stays.
    void quitIfDone();

    /// Takes over what a job holds no more. It is given back once nothing has converted or started
    /// for a minute.
    void keepAwake(PowerAssertionID assertion);

private:
    void followStates();
    void lookLater();
    void look();
    void intakeIdle();
    void followSleep();

    Vantor& vantor_;
    JobQueue& queue_;
    QueueControl& control_;
    FileIntake& intake_;
    std::function<void()> terminate_;
    Observable<bool> hasStopped_{false};
    bool wasAtWork_ = false;
    int paused_ = 0;             ///< jobs, when the states changed last
    bool jobWasPaused_ = false;  ///< that is why nothing is at work
    bool looking_ = false;       ///< in a later turn of the main loop
    bool filesTaken_ = false;    ///< since the intake was idle last
    bool quitDue_ = false;
    std::vector<PowerAssertionID> assertions_;
    std::unique_ptr<Timer> sleepTime_;
    std::vector<Subscription> subscriptions_;
    Errands errands_;
};

}  // namespace reelvane
