#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "app/job_queue.h"
#include "app/usage_counter.h"

namespace reelvane {

class Vantor;

/// How the program comes up, asks before it goes, and notices that it was moved. Main thread only.
class Lifecycle {
public:
    /// Starts another instance from this bundle; false when that failed.
    using Relaunch = std::function<bool(const std::filesystem::path& bundle)>;

    Lifecycle(Vantor& vantor, JobQueue& queue);

    [[nodiscard]] const std::string& build() const { return build_; }
    [[nodiscard]] const std::string& version() const { return version_; }
    [[nodiscard]] UsageCounter& usages() { return usages_; }
    void setRelaunch(Relaunch relaunch) { relaunch_ = std::move(relaunch); }

    /// Reads the texts that say which program this is.
    void readIdentity();
    /// Counts one use, or none, and lets the counter decide on the rating prompt.
    void increaseUsages(bool increase, bool allowFeedbackNow);
    /// `terminate` ends the program after the user was told of a move.
    void startMoveObservation(std::function<void()> terminate);
    /// Tells a user of the compatible style that there is a faster one.
    void showSpeedHintIfDue();
    /// A click on a delivered notification reveals its file.
    void listenToNotifications();
    /// False: a conversion runs, starts or is paused, and the user wants to stay.
    [[nodiscard]] bool applicationShouldTerminate();
    /// Removes every job, running ones included, and puts the preferences onto the disk.
    void applicationWillTerminate();

private:
    void bundleMoved(const std::function<void()>& terminate);

    Vantor& vantor_;
    JobQueue& queue_;
    UsageCounter usages_;
    std::string build_;
    std::string version_;
    Relaunch relaunch_;
};

}  // namespace reelvane
