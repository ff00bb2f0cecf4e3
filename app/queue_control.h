#pragma once

#include <filesystem>
#include <optional>
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

}  // namespace reelvane
