#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/job_queue.h"
#include "support/observable.h"

namespace reelvane {

class Vantor;

/// 1 once the user wants no rating prompt any more.
inline constexpr std::string_view kDontAskAgainKey = "vantor_dontaskagain";

/// Counts how often the program was of use, over all versions and for this one, and says when the
/// user may be asked for a rating. Main thread only.
class UsageCounter {
public:
    explicit UsageCounter(Vantor& vantor) : vantor_(vantor) {}

    /// How a use is counted and when the user may be asked.
    struct Request {
        int increase = 0;
        int minimumUsagesForRating = 0;
        int usagesNamedInText = 0;
        /// The text may hold [USAGES_ASKREVIEW] and [APPNAME]; asked for only when it is shown.
        std::function<std::string()> feedbackText{};
        bool allowFeedbackNow = false;
        bool forceFeedbackNow = false;
    };
    void increaseUsages(const Request& request);

    [[nodiscard]] int minimumUsagesForRating() const { return minimumUsagesForRating_; }
    [[nodiscard]] Observable<bool>& isRateable() { return isRateable_; }
    /// Told the filled text when the rating prompt is to be opened.
    [[nodiscard]] Subscription observePrompts(std::function<void(const std::string&)> open);

private:
    Vantor& vantor_;
    int minimumUsagesForRating_ = 0;
    std::optional<long long> usages_;  // read once: counting must not wait for the disk
    Observable<bool> isRateable_{false};
    Observers<const std::string&> prompts_;
};

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
    /// What was changed there is on the disk when this returns.
    void preferencesWindowWillClose();
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
