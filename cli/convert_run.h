#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli/convert_reporter.h"
#include "cli/input_check.h"
#include "cli/terminal_alerts.h"
#include "support/errands.h"
#include "support/observable.h"
#include "support/ports/alerts.h"
#include "support/ports/dispatcher.h"

namespace reelvane {

class AppDelegate;
class ConversionJob;
struct JobEvent;
class Vantor;

/// One run of `convert`: opens the files, follows the queue until nothing is left in it, and tells
/// a reporter what happens. Nobody watches, so it asks for the next job itself where a start ended
/// without one. Main thread only; outlives neither the controller nor the reporter.
class ConvertRun {
public:
    /// `ended` is called once, in a turn of the main loop, when nothing is left to do.
    ConvertRun(Vantor& vantor, AppDelegate& controller, ConvertReporter& reporter,
               std::function<void()> ended);
    ~ConvertRun();
    ConvertRun(const ConvertRun&) = delete;
    ConvertRun& operator=(const ConvertRun&) = delete;
    ConvertRun(ConvertRun&&) = delete;
    ConvertRun& operator=(ConvertRun&&) = delete;

    void start(const CheckedInputs& inputs);
    /// To be told of every alert. One that the failure of a file says too is not told
    /// again; the others are, in the next turn of the main loop.
    void alerted(const AlertContent& content);
    /// Ends the run, maybe before its time: then the conversions that had started are told to be
    /// interrupted. From here on nothing more is told of jobs.
    void abandon();

    [[nodiscard]] const ConvertSummary& summary() const { return summary_; }

private:
    /// What has been told of a job so far.
    struct FollowedJob {
        EventSubject subject{};
        bool begun = false;
        bool ended = false;
        double toldPercent = -1;  ///< the progress that was told last
        std::size_t toldNotes = 0;
        TimePoint started{};
        Subscription subscription{};
    };

    [[nodiscard]] TimePoint now() const;
    void tellAlerts();
    void refuse(const std::string& given, std::span<const VettingAlert> alerts);
    /// The name under which the user gave the movie that is taken up or refused now.
    [[nodiscard]] std::string takeGivenName(const std::filesystem::path& path);
    void showReading();

    void follow(ConversionJob& job);
    void jobChanged(const ConversionJob& job);
    void jobTold(const JobEvent& event);
    void tellStart(FollowedJob& followed, const ConversionJob& job);
    void tellProgress(FollowedJob& followed, const ConversionJob& job);
    void tellFinished(FollowedJob& followed, const ConversionJob& job);
    /// Those that are new: the last ones come after the end, when the source has been compared.
    void tellNotes(FollowedJob& followed, const ConversionJob& job);
    void tellFailed(FollowedJob& followed, const std::string& title, const std::string& message,
                    const std::string& log);

    void checkLater();
    void check();
    [[nodiscard]] bool isIdle() const;
    /// Its start was refused: it would be the next one for ever, so it makes way for those behind
    /// it.
    void dropRefusedStart(const ConversionJob& next);

    Vantor& vantor_;
    AppDelegate& controller_;
    ConvertReporter& reporter_;
    std::function<void()> ended_;
    ConvertSummary summary_;
    TimePoint begin_;
    std::multimap<std::filesystem::path, std::string> given_;  // by absolute path
    std::size_t movies_ = 0;
    std::size_t read_ = 0;  // movies that are queued or refused
    std::size_t refusedMovies_ = 0;
    std::map<const ConversionJob*, FollowedJob> followed_;
    std::vector<std::unique_ptr<ConversionJob>> refusedStarts_;  // taken off the queue
    std::vector<Subscription> subscriptions_;
    HeldAlerts heldAlerts_;
    const ConversionJob* lastStarted_ = nullptr;  // by this object
    std::string refusal_;                         // why the last start made no run
    bool checking_ = false;                       // a check is on its way
    bool over_ = false;
    Errands errands_;
};

}  // namespace reelvane
