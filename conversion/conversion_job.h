#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/conversion_job_state.h"
#include "conversion/conversion_settings.h"
#include "conversion/diagnosis.h"
#include "conversion/output_check.h"
#include "conversion/progress_file.h"
#include "conversion/start_attempt.h"
#include "media/mkv_file_info.h"
#include "support/observable.h"
#include "support/ports/child_process.h"
#include "support/ports/dispatcher.h"
#include "support/ports/power_assertions.h"

namespace reelvane {

class Vantor;

/// One queued conversion: runs ffmpeg on one input, follows its progress, judges its end.
/// Owned by the job queue; main thread only. Queued, Converting and Paused come and go; Finished
/// and Failed are final. It never destroys itself: it asks its Controller. The folders of the movie
/// and of the output, which may be on a network, are asked in the background only.
class ConversionJob final : private ProcessListener {
public:
    class Controller;

    ConversionJob(Vantor& vantor, Controller& controller, MKVFileInfo fileInfo,
                  std::size_t audioTrackIndex);
    ~ConversionJob() override;
    ConversionJob(const ConversionJob&) = delete;
    ConversionJob& operator=(const ConversionJob&) = delete;
    ConversionJob(ConversionJob&&) = delete;
    ConversionJob& operator=(ConversionJob&&) = delete;

    [[nodiscard]] const MKVFileInfo& fileInfo() const { return fileInfo_; }
    [[nodiscard]] MKVFileInfo& fileInfo() { return fileInfo_; }
    [[nodiscard]] std::size_t audioTrackIndex() const { return audioTrackIndex_; }
    [[nodiscard]] double progress() const { return progress_; }  ///< per cent, 0 to 100
    [[nodiscard]] ConversionJobState state() const { return state_; }
    /// Still Queued: the converter will be launched once the disks have answered.
    [[nodiscard]] bool isStarting() const { return startWanted_; }
    /// Still Converting: the run has ended, and its output is being read back.
    [[nodiscard]] bool isBeingChecked() const { return checking_ != nullptr; }
    [[nodiscard]] bool finishedOK() const { return finishedOK_; }
    [[nodiscard]] bool finishedError() const { return finishedError_; }
    [[nodiscard]] bool fastmode() const { return fastmode_; }
    /// Of the converter; empty before it is to be run.
    [[nodiscard]] const std::vector<std::string>& arguments() const { return arguments_; }
    /// The preferences that the arguments were built with; absent as long as there are none.
    [[nodiscard]] const std::optional<ConversionSettings>& runSettings() const {
        return runSettings_;
    }
    [[nodiscard]] const std::string& jobOutput() const { return jobOutput_; }
    /// The status line, built fresh.
    [[nodiscard]] std::string stateInfoString() const;
    /// Seconds that are left, 0 to 18000; 18000 before the first progress, and not a number in the
    /// moment of the launch.
    [[nodiscard]] double remainingSeconds() const;
    /// Seconds from launch to end, or until now while the end is being handled; 0 before it.
    [[nodiscard]] double conversionSeconds() const;

    /// Told after every change of the state or the progress, when a start begins or is over, and
    /// when a run has ended.
    [[nodiscard]] Subscription observe(std::function<void()> changed);

    void presetSpeedInfo();
    void start();
    /// Suspends the run; a job that is starting waits in the queue as before.
    void pause();
    void continueJob();
    /// Shows the output (or, with Shift, the input) in the file manager; explains a failure.
    void reveal();
    /// Ends the process, deletes what is unfinished and takes the job off the list.
    void remove();

    /// What reading the output back has shown: "12 s, 3 tracks, 1.43 GB, verified"; empty before
    /// the job is Finished.
    [[nodiscard]] const std::string& details() const { return outputCheck_.details; }
    /// What the user should know of a Finished job: that its output is too short. Else empty.
    [[nodiscard]] std::string warning() const;

    /// Why the job failed, by the diagnosis table.
    [[nodiscard]] Diagnosis diagnosis() const;

private:
    // ProcessListener
    void outputReceived(std::string_view bytes) override;
    void taskFinished(int exitStatus, std::string_view remainingOutput) override;

    void setState(ConversionJobState state);
    void setProgress(double percent);
    void setSpeedInfoFromMethod(AudioMethod method);
    [[nodiscard]] double elapsedSeconds() const;

    void takeSleepAssertion();
    void releaseSleepAssertion();

    // The steps of `start`. One that can end it answers false when it has told the user why.
    void prepared(const StartFacts& facts);
    void askDisks();
    /// The user did not wait: what was made for the start goes before another one is made.
    void undoAttempt();
    /// The job leaves while the disks are asked.
    void leaveAttempt();
    [[nodiscard]] bool checkInput(const StartFacts& facts);
    void takeOutput(const StartFacts& facts);
    [[nodiscard]] bool makeProgressFile(const StartFacts& facts);
    [[nodiscard]] bool checkAudio(const AudioSettings& settings);
    [[nodiscard]] bool checkFreeSpace(const std::optional<VolumeFacts>& volume);
    [[nodiscard]] bool needsFixup(std::optional<AudioMethod> method);
    void launch();
    void refuseStart(const std::string& problem);

    void startProgressTimer();
    void progressTimer();

    // The steps of `taskFinished`.
    void closeRun(std::string_view remainingOutput);
    void checkRun(const ConversionSettings& settings);
    void runEnded(const ConversionSettings& settings, bool failed);
    void fail();
    void succeed(const ConversionSettings& settings);

    void deleteOutput();
    /// Gives the name of an output back that the converter has not begun to write.
    void deleteReservation();
    void settleOutput();

    Vantor& vantor_;
    Controller& controller_;
    MKVFileInfo fileInfo_;
    std::size_t audioTrackIndex_ = 0;
    double progress_ = 0;
    ConversionJobState state_ = ConversionJobState::Queued;
    bool finishedOK_ = false;
    bool finishedError_ = false;
    bool fastmode_ = false;
    bool ownsOutput_ = false;  ///< what lies at the output path is unfinished and this job's

    std::string jobOutput_;  ///< the converter's warnings and errors, byte for byte
    std::vector<std::string> arguments_;
    std::optional<ConversionSettings> runSettings_;
    std::string startProblem_;  ///< why the converter was never run; empty: nothing kept it
    OutputCheck outputCheck_;   ///< of a run that ended with status 0
    // Shared with the work in the background, which may end after the job.
    std::shared_ptr<StartAttempt> attempt_;  ///< the disks are asked before the launch
    std::shared_ptr<const bool> checking_;   ///< the output is read back after the run
    bool startWanted_ = false;
    std::unique_ptr<ChildProcess> task_;
    std::unique_ptr<Timer> timer_;
    std::optional<TimePoint> startDate_;
    std::optional<TimePoint> stopDate_;
    ProgressFile progressFile_;
    std::filesystem::path audioFile_;
    std::filesystem::path aacFile_;
    PowerAssertionID sleepAssertion_ = kNoPowerAssertion;
    Observers<> observers_;
    /// Gone with the job, which an alert's own loop may take off the list. Shared to be watched.
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

/// All that a job asks of its owner. AppDelegate implements it; tests fake it.
class ConversionJob::Controller {
public:
    virtual ~Controller() = default;
    virtual void removeJob(ConversionJob& job) = 0;
    virtual void startNextJobInQueue() = 0;
    [[nodiscard]] virtual int jobCountWithState(ConversionJobState state) const = 0;
    /// A job started or went on: refresh the queue's controls.
    virtual void pauseContinueClicked() = 0;
    /// True while a job of the list converts or is starting.
    [[nodiscard]] virtual bool isAtWork() const = 0;
    [[nodiscard]] virtual OutputPlaces outputPlaces() = 0;
    /// From here on something unfinished may lie at the output path; `outputMark`: see birthMarkOf.
    virtual void outputBegun(const std::filesystem::path& output, const std::string& outputMark,
                             const std::filesystem::path& progressFile) = 0;
    /// What lies there now is whole, or nothing does.
    virtual void outputSettled(const std::filesystem::path& output) = 0;
    /// Deletes what lies at the output path, unless it is the source, and settles it; in the
    /// background, but before the program ends.
    virtual void discardOutput(const std::filesystem::path& output,
                               const std::filesystem::path& source) = 0;
    /// Deletes a converted source in the same way.
    virtual void deleteSource(const std::filesystem::path& source) = 0;
    /// A run has ended, well or not: count it.
    virtual void conversionEnded() = 0;
    /// The preferences as they stand now.
    [[nodiscard]] virtual ConversionSettings conversionSettings() const = 0;
    /// Ends the program as soon as the present call is over.
    virtual void terminate() = 0;
};

}  // namespace reelvane
