#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "app/destinations.h"
#include "app/file_intake.h"
#include "app/job_owner.h"
#include "app/job_queue.h"
#include "app/lifecycle.h"
#include "app/outputs.h"
#include "app/queue_control.h"
#include "app/settings_reader.h"
#include "app/unfinished_outputs.h"
#include "support/observable.h"

namespace reelvane {

class Vantor;

/// A window that the controller wants to see in front.
struct WindowRequest {
    enum class Kind { Main, Documentation, Promotion };
    Kind kind = Kind::Main;
    std::optional<int> tab{};  ///< of the documentation window; absent: as it is
};

/// Brings windows to the front, wherever they are made. Main thread only.
class WindowRequests {
public:
    void openMainWindow();
    void openDocumentationWindow(std::optional<int> tab);
    void openPromotion();
    [[nodiscard]] Subscription observe(std::function<void(const WindowRequest&)> open);

private:
    Observers<const WindowRequest&> observers_;
};

/// The controller: starts and ends the program, and connects its parts, which do the rest and are
/// called themselves. Owned by `main`; main thread only. Preference defaults must be registered
/// before.
class AppDelegate final : private FileIntake::Owner {
public:
    explicit AppDelegate(Vantor& vantor, RunChoices choices = {});
    ~AppDelegate() override;
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    AppDelegate(AppDelegate&&) = delete;
    AppDelegate& operator=(AppDelegate&&) = delete;

    /// The start-up sequence; once, before anything else.
    void applicationWillFinishLaunching();
    /// Removes every job, running ones included, and puts the preferences onto the disk. What was
    /// unfinished is gone when this returns.
    void applicationWillTerminate();
    /// For a program that is ended from within, with no time to tell anybody: the running
    /// conversion ends with it, and what it has written is deleted.
    void applicationIsAborting();
    /// The program was opened again while it runs. False: nothing is left to do for the platform.
    [[nodiscard]] bool applicationShouldHandleReopen();
    /// What ends the main loop when the program is to quit.
    void setTerminateHandler(std::function<void()> handler);

    [[nodiscard]] JobQueue& queue() { return queue_; }
    [[nodiscard]] QueueControl& queueControl() { return control_; }
    [[nodiscard]] QueueRest& queueRest() { return rest_; }
    [[nodiscard]] FileIntake& intake() { return intake_; }
    [[nodiscard]] Destinations& destinations() { return destinations_; }
    [[nodiscard]] const Outputs& outputs() const { return *outputs_; }
    [[nodiscard]] Lifecycle& lifecycle() { return lifecycle_; }
    [[nodiscard]] JobOwner& jobOwner() { return jobOwner_; }
    [[nodiscard]] WindowRequests& windows() { return windows_; }

private:
    void addJob(std::unique_ptr<ConversionJob> job, bool othersWait) override;
    [[nodiscard]] ConversionJob::Controller& jobController() override { return jobOwner_; }
    void bringToFront() override { windows_.openMainWindow(); }
    void terminate() override;

    Vantor& vantor_;
    RunChoices choices_;
    JobQueue queue_;
    // Shared with work in the background that may end after the controller.
    std::shared_ptr<OutputNames> names_ = std::make_shared<OutputNames>();
    std::shared_ptr<Outputs> outputs_;
    UnfinishedOutputs unfinished_;
    QueueControl control_;
    Destinations destinations_;
    FileIntake intake_;
    Lifecycle lifecycle_;
    QueueRest rest_;
    JobOwner jobOwner_;
    WindowRequests windows_;
    std::function<void()> terminateHandler_;
    Subscription retakenMovies_;
};

}  // namespace reelvane
