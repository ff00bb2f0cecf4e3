#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/job_queue.h"
#include "app/job_remover.h"
#include "support/errands.h"
#include "support/observable.h"
#include "support/ports/dispatcher.h"
#include "support/ports/power_assertions.h"

namespace reelvane {

class FileIntake;
class Translations;
class Vantor;

/// The image that the toolbar's pause item shows, by its resource name.
inline constexpr std::string_view kPauseImage = "toolbar_pause";
inline constexpr std::string_view kResumeImage = "toolbar_start";

/// Moves the queue on, one conversion at a time, pauses and resumes it, and keeps the texts of its
/// controls. Main thread only.
class QueueControl {
public:
    QueueControl(Vantor& vantor, JobQueue& queue);

    [[nodiscard]] bool paused() const { return paused_; }

    /// Starts or continues the first job that is queued or paused, unless the queue is paused.
    void startNextJobInQueue();
    /// Starts no further job, and ends what was removed and could have come back: the program ends.
    void stop();
    /// True for a queued or paused job while none converts or is starting.
    [[nodiscard]] bool canContinue(const ConversionJob& job) const;
    /// Starts or continues such a job on the user's word, whatever stands before it.
    void continueJob(ConversionJob& job) const;

    /// The user pauses or resumes the queue.
    void togglePause();
    /// A job has started or gone on: a paused queue is so no longer, but starts nothing else.
    void jobWentOn();
    /// Takes these jobs off the list, all of them in it, some at once and the others in later turns
    /// of the main loop. The queue goes on when all are gone: each removal alone would start the
    /// next job, perhaps one that goes in its turn.
    void removeJobs(const std::vector<ConversionJob*>& jobs);
    /// True as long as jobs wait to leave the list.
    [[nodiscard]] bool isRemoving() const { return remover_.isRemoving(); }
    /// The last removal, as long as it can be undone.
    [[nodiscard]] Observable<std::optional<Removal>>& undoableRemoval() {
        return remover_.undoable();
    }
    /// Puts back what was removed last. A conversion goes on, if nothing else is at work.
    void undoRemoval();
    /// The movie is taken up again: its removal needs no way back, and its name is free.
    void forgetRemovalOf(const std::filesystem::path& movie) { remover_.forgetMovie(movie); }
    /// Removes every finished job.
    void cleanClicked();
    /// What cleaning up takes off the list: Finished jobs of which there is nothing to be told.
    [[nodiscard]] std::vector<ConversionJob*> cleanableJobs() const;
    /// True when there is one.
    [[nodiscard]] bool canCleanUp() const;
    void updateWindowTitle();

    [[nodiscard]] Observable<std::string>& windowTitle() { return windowTitle_; }
    [[nodiscard]] Observable<std::string>& addButtonTitle() { return addButtonTitle_; }
    /// The label of the toolbar item and the title of the menu item.
    [[nodiscard]] Observable<std::string>& pauseTitle() { return pauseTitle_; }
    [[nodiscard]] Observable<std::string>& pauseImage() { return pauseImage_; }

private:
    void showTexts();
    void jobsTaken();

    Vantor& vantor_;
    JobQueue& queue_;
    bool paused_ = false;
    bool stopped_ = false;
    JobRemover remover_;
    Observable<std::string> windowTitle_;
    Observable<std::string> addButtonTitle_;
    Observable<std::string> pauseTitle_;
    Observable<std::string> pauseImage_;
    Subscription states_;
};

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

/// What the main window's title tells of the queue.
struct QueueSummary {
    bool paused = false;
    std::size_t jobs = 0;
    int queued = 0;
};

/// "Reelvane  [3 Job(s), 2 Queued]", "Reelvane (Paused)" and so on.
[[nodiscard]] std::string windowTitle(const Translations& translations, std::string_view appName,
                                      const QueueSummary& queue);

}  // namespace reelvane
