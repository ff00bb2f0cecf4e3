#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/destinations.h"
#include "app/file_intake.h"
#include "app/job_queue.h"
#include "app/run_choices.h"
#include "conversion/conversion_job.h"
#include "support/observable.h"

namespace reelvane {

class Vantor;

/// The controller: a face over the queue, the file intake and the destinations, which hold the
/// state. Owned by `main`; main thread only. Preference defaults must be registered before.
class AppDelegate final : public ConversionJob::Controller, private FileIntake::Owner {
public:
    AppDelegate(Vantor& vantor, RunChoices choices = {});
    ~AppDelegate() override;
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    AppDelegate(AppDelegate&&) = delete;
    AppDelegate& operator=(AppDelegate&&) = delete;

    /// The start-up sequence; once, before anything else.
    void applicationWillFinishLaunching();
    /// False: the user wants to stay because a conversion runs.
    [[nodiscard]] bool applicationShouldTerminate();
    /// Removes every job, running ones included, and puts the preferences onto the disk.
    void applicationWillTerminate();
    /// What ends the main loop when the program is to quit.
    void setTerminateHandler(std::function<void()> handler);

    /// Takes movies and subtitle files in, as if opened together.
    void openFiles(const std::vector<std::filesystem::path>& paths);
    void addJob(std::unique_ptr<ConversionJob> job) override;
    /// Removes every finished job.
    void cleanClicked();
    /// The user toggles the queue's pause.
    void togglePause();

    [[nodiscard]] JobQueue& queue() { return queue_; }
    [[nodiscard]] FileIntake& intake() { return intake_; }
    [[nodiscard]] Destinations& destinations() { return destinations_; }
    [[nodiscard]] bool paused() const { return paused_; }
    [[nodiscard]] Observable<std::string>& windowTitle() { return windowTitle_; }
    [[nodiscard]] Observable<std::string>& addButtonTitle() { return addButtonTitle_; }

    // What a job asks of its owner.
    void removeJob(ConversionJob& job) override;
    void startNextJobInQueue() override;
    [[nodiscard]] int jobCountWithState(ConversionJobState state) const override;
    void pauseContinueClicked() override;
    void conversionEnded() override;
    [[nodiscard]] ConversionSettings conversionSettings() const override;
    void terminate() override;
};

}  // namespace reelvane
