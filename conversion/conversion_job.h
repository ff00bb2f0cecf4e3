#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/conversion_settings.h"
#include "conversion/cue_count.h"
#include "conversion/diagnosis.h"
#include "conversion/job_start.h"
#include "conversion/output_check.h"
#include "conversion/progress_file.h"
#include "conversion/source_removal.h"
#include "conversion/status_line.h"
#include "media/mkv_file_info.h"
#include "support/errands.h"
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
    [[nodiscard]] bool isBeingChecked() const { return checking_; }
    /// Already Finished: its picture is compared with the source's before that may be removed.
    [[nodiscard]] bool isComparing() const { return remover_ != nullptr; }
    [[nodiscard]] bool finishedOK() const { return finishedOK_; }
    [[nodiscard]] bool finishedError() const { return finishedError_; }
    [[nodiscard]] bool fastmode() const { return fastmode_; }
    /// Of the converter; empty before it is to be run.
    [[nodiscard]] const std::vector<std::string>& arguments() const { return arguments_; }
    /// The preferences that the arguments were built with; absent as long as there are none.
    [[nodiscard]] const std::optional<ConversionSettings>& runSettings() const {
        return runSettings_;
    }
    [[nodiscard]] const RunLog& log() const { return log_; }
    /// The status line, built fresh.
    [[nodiscard]] std::string stateInfoString() const;
    /// Seconds that are left, 0 to 18000; 18000 before the first progress, and not a number in the
    /// moment of the launch.
    [[nodiscard]] double remainingSeconds() const;
    /// Seconds that are left of a run, for a place of its own; absent before the first progress.
    [[nodiscard]] std::optional<double> timeLeft() const;
    /// Seconds from launch to end, or until now while the end is being handled; 0 before it.
    [[nodiscard]] double conversionSeconds() const;

    /// Told after every change of the state or the progress, when a start begins or is over, when a
    /// run has ended, and when its source has been compared.
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
    /// The job leaves the list and may come back: its run is suspended, and what ends meanwhile is
    /// not followed up.
    void setAside();
    /// The job is in the list again; a run that was suspended stays so. What ended meanwhile is
    /// followed up now, and the job may be gone when this returns.
    void bringBack();

    /// What reading the output back has shown: "12 s, 3 tracks, 1.43 GB, verified"; empty before
    /// the job is Finished.
    [[nodiscard]] const std::string& details() const { return outputCheck_.details; }
    /// What the user should know of a Finished job, beside that it is.
    [[nodiscard]] const JobNotes& notes() const { return outputCheck_.notes; }
    /// Those of them that are told in amber, as one text; empty: all is well.
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
    /// The job needs it no more, but the machine is to stay awake a little longer.
    void leaveSleepAssertion();

    // The steps of `start`. One that can end it answers false when it has told the user why.
    void askDisks();
    void prepared(StartFacts facts);
    /// The user did not wait: what was made for the start goes before another one is made.
    void undoStart(OutputLease made);
    [[nodiscard]] bool checkInput(const StartFacts& facts);
    [[nodiscard]] bool takeOutput(OutputLease::Taken& taken);
    /// The output lies elsewhere than it was promised: that name is the job's now.
    void moveDestination(const std::filesystem::path& destination);
    [[nodiscard]] std::string outputProblem(const OutputLease::Taken& taken) const;
    [[nodiscard]] bool checkAudio(const AudioSettings& settings);
    [[nodiscard]] bool checkFreeSpace(const std::optional<VolumeFacts>& volume);
    /// The stream of an AAC track that is to be copied.
    [[nodiscard]] std::optional<int> copiedAAC() const;
    void launch();
    void refuseStart(const std::string& problem);

    void startProgressTimer();
    void progressTimer();

    // The steps of `taskFinished`.
    void closeRun(std::string_view remainingOutput);
    void checkRun(const ConversionSettings& settings);
    void keepOutput(const ConversionSettings& settings);
    [[nodiscard]] CueTools cueTools() const;
    void followUpEnd();
    void runEnded(const ConversionSettings& settings, bool failed);
    void fail();
    void succeed(const ConversionSettings& settings);
    [[nodiscard]] std::string placeProblem(RunFiles::Keeping keeping) const;
    void decideOnSource(const ConversionSettings& settings);
    void tellOfSource(const SourceFate& fate, bool toTrash);
    void sourceDecided(const ConversionSettings& settings, const SourceFate& fate);

    Vantor& vantor_;
    Controller& controller_;
    MKVFileInfo fileInfo_;
    std::size_t audioTrackIndex_ = 0;
    double progress_ = 0;
    ConversionJobState state_ = ConversionJobState::Queued;
    bool finishedOK_ = false;
    bool finishedError_ = false;
    bool fastmode_ = false;
    RunLog log_;
    std::vector<std::string> arguments_;
    StreamPlan plan_;  ///< what the arguments say
    std::optional<ConversionSettings> runSettings_;
    std::string problem_;      ///< why there was no run, or no place for its output; or empty
    OutputCheck outputCheck_;  ///< of a run that ended with status 0
    bool asking_ = false;  ///< the disks are being asked, or what was made for a start goes again
    bool startWanted_ = false;
    bool checking_ = false;                   ///< the output is being read back
    std::stop_source leaving_;                ///< stops what is about to be made for a start
    OutputLease lease_;                       ///< from the start to the end of the run
    std::unique_ptr<SourceRemover> remover_;  ///< after the run, where the source is to go
    bool aside_ = false;
    std::function<void()> missedEnd_;  ///< follows up what ended while the job was set aside
    std::unique_ptr<ChildProcess> task_;
    std::unique_ptr<Timer> timer_;
    std::optional<TimePoint> startDate_;
    std::optional<TimePoint> stopDate_;
    ProgressReader progressReader_;
    std::filesystem::path audioFile_;
    std::filesystem::path aacFile_;
    PowerAssertionID sleepAssertion_ = kNoPowerAssertion;
    Observers<> observers_;
    /// Gone with the job, which an alert's own loop may take off the list. Shared to be watched.
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
    Errands errands_;
};

/// All that a job asks of its owner. AppDelegate implements it; tests fake it.
class ConversionJob::Controller {
public:
    virtual ~Controller() = default;
    virtual void removeJob(ConversionJob& job) = 0;
    virtual void startNextJobInQueue() = 0;
    /// A job started or went on: refresh the queue's controls.
    virtual void pauseContinueClicked() = 0;
    /// True while a job of the list converts or is starting.
    [[nodiscard]] virtual bool isAtWork() const = 0;
    /// Who gives out the outputs' places. Shared with work in the background.
    [[nodiscard]] virtual std::shared_ptr<OutputLease::Keeper> outputs() = 0;
    /// Shared likewise.
    [[nodiscard]] virtual std::shared_ptr<ConverterVersion> converterVersion() = 0;
    /// Who compares an output with its source, one after the other.
    [[nodiscard]] virtual Turns& comparisons() = 0;
    /// A run has ended, well or not: count it.
    virtual void conversionEnded(bool succeeded) = 0;
    /// All that follows a run is done: quit where that is due.
    virtual void quitIfDone() = 0;
    /// A job that has left, or could not start, holds this no more; it is the owner's to give back.
    virtual void assertionLeft(PowerAssertionID assertion) = 0;
    /// The preferences as they stand now.
    [[nodiscard]] virtual ConversionSettings conversionSettings() const = 0;
};

}  // namespace reelvane
