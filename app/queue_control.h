#pragma once

#include <string>
#include <vector>

#include "app/job_queue.h"
#include "app/job_remover.h"
#include "support/observable.h"

namespace reelvane {

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
    /// Starts no further job: the program ends.
    void stop() { stopped_ = true; }
    /// True for a queued or paused job while none converts or is starting.
    [[nodiscard]] bool canContinue(const ConversionJob& job) const;
    /// Starts or continues such a job on the user's word, whatever stands before it.
    void continueJob(ConversionJob& job) const;

    /// The user pauses or resumes the queue.
    void togglePause();
    /// A job has started or gone on: a paused queue is so no longer, but starts nothing else.
    void jobWentOn();
    /// Removes these jobs, all of them in the list, some at once and the others in later turns of
    /// the main loop. The queue goes on when all are gone: each removal alone would start the next
    /// job, perhaps one that goes in its turn.
    void removeJobs(const std::vector<ConversionJob*>& jobs);
    /// Removes every finished job.
    void cleanClicked();
    void updateWindowTitle();

    [[nodiscard]] Observable<std::string>& windowTitle() { return windowTitle_; }
    [[nodiscard]] Observable<std::string>& addButtonTitle() { return addButtonTitle_; }
    /// The label of the toolbar item and the title of the menu item.
    [[nodiscard]] Observable<std::string>& pauseTitle() { return pauseTitle_; }
    [[nodiscard]] Observable<std::string>& pauseImage() { return pauseImage_; }

private:
    void showTexts();
    void jobsRemoved();

    Vantor& vantor_;
    JobQueue& queue_;
    bool paused_ = false;
    bool stopped_ = false;
    JobRemover remover_;
    bool startDue_ = false;  ///< the next job was asked for while several are being removed
    Observable<std::string> windowTitle_;
    Observable<std::string> addButtonTitle_;
    Observable<std::string> pauseTitle_;
    Observable<std::string> pauseImage_;
};

}  // namespace reelvane
