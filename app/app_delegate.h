#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/destinations.h"
#include "app/file_intake.h"
#include "app/job_queue.h"
#include "app/lifecycle.h"
#include "app/outputs.h"
#include "app/queue_control.h"
#include "app/settings_reader.h"
#include "app/unfinished_outputs.h"
#include "conversion/conversion_job.h"
#include "media/probe.h"
#include "support/dispatch.h"
#include "support/observable.h"

namespace reelvane {

class Vantor;

/// A window that the controller wants to see in front.
struct WindowRequest {
    enum class Kind { Main, Documentation, Promotion };
    Kind kind = Kind::Main;
    std::optional<int> tab{};  ///< of the documentation window; absent: as it is
};

/// The controller: a face over the queue, the file intake and the destinations, which hold the
/// state. Owned by `main`; main thread only. Preference defaults must be registered before.
class AppDelegate final : public ConversionJob::Controller, private FileIntake::Owner {
public:
    explicit AppDelegate(Vantor& vantor, RunChoices choices = {});
    ~AppDelegate() override;
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    AppDelegate(AppDelegate&&) = delete;
    AppDelegate& operator=(AppDelegate&&) = delete;

    /// The start-up sequence; once, before anything else.
    void applicationWillFinishLaunching();
    /// False: the user wants to stay because a conversion runs.
    [[nodiscard]] bool applicationShouldTerminate();
    /// Removes every job, running ones included, and puts the preferences onto the disk. What was
    /// unfinished is gone when this returns.
    void applicationWillTerminate();
    /// For a program that is ended from within, with no time to tell anybody: the running
    /// conversion ends with it, and what it has written is deleted.
    void applicationIsAborting();
    /// What the program's end should have deleted and could not; the next start tries again.
    [[nodiscard]] std::vector<std::filesystem::path> leftBehind() const {
        return outputs_->leftBehind();
    }
    /// The program was opened again while it runs. False: nothing is left to do for the platform.
    [[nodiscard]] bool applicationShouldHandleReopen();
    /// What ends the main loop when the program is to quit.
    void setTerminateHandler(std::function<void()> handler);

    /// Takes movies and subtitle files in, as if opened together.
    void openFiles(const std::vector<std::filesystem::path>& paths);
    /// Removes these jobs, all of them in the list; the queue goes on when all are gone.
    void removeJobs(const std::vector<ConversionJob*>& jobs);
    /// Removes every finished job.
    void cleanClicked();
    /// The user toggles the queue's pause.
    void togglePause();
    /// The user starts or continues this job.
    void continueJob(ConversionJob& job);

    void openMainWindow();
    void openDocumentationWindow(std::optional<int> tab);
    void openPromotion();
    void preferencesWindowWillClose();
    /// Shows the settings of the present conversion style.
    void selectConversionStyle();

    [[nodiscard]] JobQueue& queue() { return queue_; }
    [[nodiscard]] QueueControl& queueControl() { return control_; }
    [[nodiscard]] FileIntake& intake() { return intake_; }
    [[nodiscard]] Destinations& destinations() { return destinations_; }
    [[nodiscard]] Lifecycle& lifecycle() { return lifecycle_; }
    [[nodiscard]] int jobCountWithState(ConversionJobState state) const {
        return queue_.jobCountWithState(state);
    }
    /// The queue stands although movies wait: only the user starts it again.
    [[nodiscard]] Observable<bool>& queueHasStopped() { return rest_.hasStopped(); }
    [[nodiscard]] bool paused() const { return control_.paused(); }
    [[nodiscard]] Observable<std::string>& windowTitle() { return control_.windowTitle(); }
    [[nodiscard]] Observable<std::string>& addButtonTitle() { return control_.addButtonTitle(); }
    [[nodiscard]] Observable<ConversionPreset>& conversionStyle() { return conversionStyle_; }
    [[nodiscard]] Subscription observeWindowRequests(
        std::function<void(const WindowRequest&)> open);

    // What a job asks of its owner.
    void removeJob(ConversionJob& job) override;
    void startNextJobInQueue() override;
    void pauseContinueClicked() override;
    [[nodiscard]] bool isAtWork() const override { return queue_.isAtWork(); }
    [[nodiscard]] std::shared_ptr<OutputLease::Keeper> outputs() override { return outputs_; }
    [[nodiscard]] std::shared_ptr<ConverterVersion> converterVersion() override { return version_; }
    [[nodiscard]] Turns& comparisons() override { return comparisons_; }
    void conversionEnded(bool succeeded) override;
    void quitIfDone() override;
    void assertionLeft(PowerAssertionID assertion) override { rest_.keepAwake(assertion); }
    [[nodiscard]] ConversionSettings conversionSettings() const override;

private:
    void addJob(std::unique_ptr<ConversionJob> job) override;
    [[nodiscard]] ConversionJob::Controller& jobController() override { return *this; }
    void updateWindowTitle() override;
    void bringToFront() override;
    void terminate() override;
    void releaseNames(const ConversionJob& job);

    Vantor& vantor_;
    RunChoices choices_;
    JobQueue queue_;
    // Shared with work in the background that may end after the controller.
    std::shared_ptr<OutputNames> names_ = std::make_shared<OutputNames>();
    std::shared_ptr<Outputs> outputs_;
    std::shared_ptr<ConverterVersion> version_;
    Turns comparisons_;
    UnfinishedOutputs unfinished_;
    RetiredJobs retired_;
    QueueControl control_;
    Destinations destinations_;
    FileIntake intake_;
    Lifecycle lifecycle_;
    QueueRest rest_;
    Observable<ConversionPreset> conversionStyle_;
    Observers<const WindowRequest&> windowRequests_;
    std::function<void()> terminateHandler_;
    Subscription retakenMovies_;
};

}  // namespace reelvane
