#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/conversion_settings.h"
#include "conversion/cue_count.h"
#include "conversion/diagnosis.h"
#include "conversion/job_event.h"
#include "conversion/job_phases.h"
#include "conversion/job_start.h"
#include "conversion/output_check.h"
#include "conversion/status_line.h"
#include "conversion/stream_plan.h"
#include "media/mkv_file_info.h"
#include "support/observable.h"
#include "support/ports/child_process.h"
#include "support/ports/dispatcher.h"

namespace reelvane {

class Vantor;

/// What is known of a job's run.
struct JobRun {
    RunLog log{};
    std::vector<std::string> arguments{};
    StreamPlan plan{};  ///< what the arguments say
    std::optional<ConversionSettings> settings{};
    std::optional<TimePoint> started{};
    std::optional<TimePoint> ended{};
    double progress = 0;  ///< per cent, 0 to 100
};

/// What has become of a job.
struct JobResult {
    std::string problem{};  ///< why there was no run, or no place for its output; or empty
    OutputCheck check{};    ///< of a run that ended with status 0
};

/// Takes the next step of a job, but only while the job is in the list.
class NextStep {
public:
    /// Now, or when the job comes back. Nothing is to follow while a step waits.
    void take(std::function<void()> step);
    void hold() { held_ = true; }
    void release();

private:
    bool held_ = false;
    std::function<void()> waiting_;
};

/// One queued conversion: runs ffmpeg on one input, follows its progress, judges its end. It is its
/// facts and one phase, and what a phase has not cannot be asked of it. Owned by the job queue;
/// main thread only. Queued, Converting and Paused come and go; Finished and Failed are final. It
/// never destroys itself: it asks its Controller. The folders of the movie and of the output, which
/// may be on a network, are asked in the background only.
class ConversionJob final : private ProcessListener {
public:
    class Controller;

    ConversionJob(Vantor& vantor, Controller& controller, MKVFileInfo fileInfo,
                  std::size_t audioTrackIndex);
    ~ConversionJob() override = default;
    ConversionJob(const ConversionJob&) = delete;
    ConversionJob& operator=(const ConversionJob&) = delete;
    ConversionJob(ConversionJob&&) = delete;
    ConversionJob& operator=(ConversionJob&&) = delete;

    [[nodiscard]] const MKVFileInfo& fileInfo() const { return fileInfo_; }
    [[nodiscard]] MKVFileInfo& fileInfo() { return fileInfo_; }
    [[nodiscard]] std::size_t audioTrackIndex() const { return audioTrackIndex_; }
    [[nodiscard]] double progress() const { return run_.progress; }  ///< per cent, 0 to 100
    [[nodiscard]] ConversionJobState state() const { return stateOf(phase_); }
    /// Still Queued: the converter will be launched once the disks have answered.
    [[nodiscard]] bool isStarting() const { return std::holds_alternative<StartingJob>(phase_); }
    /// Still Converting: the run has ended, and its output is being read back.
    [[nodiscard]] bool isBeingChecked() const {
        return std::holds_alternative<CheckingJob>(phase_);
    }
    /// Already Finished: its picture is compared with the source's before that may be removed.
    [[nodiscard]] bool isComparing() const {
        const auto* const finished = std::get_if<FinishedJob>(&phase_);
        return finished != nullptr && finished->comparison != nullptr;
    }
    [[nodiscard]] bool finishedOK() const { return state() == ConversionJobState::Finished; }
    [[nodiscard]] bool finishedError() const { return state() == ConversionJobState::Failed; }
    [[nodiscard]] bool fastmode() const { return fastmode_; }
    /// Of the converter; empty before it is to be run.
    [[nodiscard]] const std::vector<std::string>& arguments() const { return run_.arguments; }
    /// The preferences that the arguments were built with; absent as long as there are none.
    [[nodiscard]] const std::optional<ConversionSettings>& runSettings() const {
        return run_.settings;
    }
    [[nodiscard]] const RunLog& log() const { return run_.log; }
    /// The status line, built fresh.
    [[nodiscard]] std::string stateInfoString() const;
    /// Seconds that are left, 0 to 18000; 18000 before the first progress, and not a number in the
    /// moment of the launch.
    [[nodiscard]] double remainingSeconds() const;
    /// Seconds that are left of a run, for a place of its own; absent before the first progress.
    [[nodiscard]] std::optional<double> timeLeft() const;
    /// Seconds from launch to end; 0 before it.
    [[nodiscard]] double conversionSeconds() const;

    /// Told after every change of the state or the progress, when a start begins or is over, when a
    /// run has ended, and when its source has been compared.
    [[nodiscard]] Subscription observe(std::function<void()> changed);

    void presetSpeedInfo();
    /// Of a job that is Queued, or whose run is over.
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
    [[nodiscard]] const std::string& details() const { return result_.check.details; }
    /// What the user should know of a Finished job, beside that it is.
    [[nodiscard]] const JobNotes& notes() const { return result_.check.notes; }
    /// Those of them that are told in amber, as one text; empty: all is well.
    [[nodiscard]] std::string warning() const;

    /// Why the job failed, by the diagnosis table.
    [[nodiscard]] Diagnosis diagnosis() const;

private:
    // ProcessListener
    void outputReceived(std::string_view bytes) override;
    void taskFinished(int exitStatus, std::string_view remainingOutput) override;

    /// The phase changes, with all that it means; observers are told.
    template <typename Phase>
    void enter(Phase phase);
    void phaseEntered();
    void setSpeedInfoFromMethod(AudioMethod method);
    [[nodiscard]] double elapsedSeconds() const;

    [[nodiscard]] SleepAssertion stayAwake() const;
    /// The job needs it no more, but the machine is to stay awake a little longer.
    void leaveAwake(SleepAssertion& awake);

    // The steps of `start`. One that can end it answers false when it has told the user why.
    void askDisks(DiskWork& disks);
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
    void tell(JobEvent::Kind kind, std::string_view title = {}, std::string_view text = {});

    [[nodiscard]] RunningJob::Following follow(SleepAssertion awake);
    void progressTimer();

    // The steps of `taskFinished`.
    void checkRun();
    void keepOutput();
    [[nodiscard]] CueTools cueTools(const DiskWork& disks) const;
    void runEnded(bool failed);
    void succeed();
    [[nodiscard]] std::string placeProblem(RunFiles::Keeping keeping) const;
    /// Null: the source stays, and a note says why.
    [[nodiscard]] std::unique_ptr<SourceRemover> decideOnSource(const ConversionSettings& settings);
    void tellOfSource(const SourceFate& fate, bool toTrash);
    void sourceDecided(const ConversionSettings& settings, const SourceFate& fate);

    Vantor& vantor_;
    Controller& controller_;
    MKVFileInfo fileInfo_;
    std::size_t audioTrackIndex_ = 0;
    bool fastmode_ = false;
    JobRun run_;
    JobResult result_;
    NextStep nextStep_;
    Observers<> observers_;
    JobPhase phase_;
};

template <typename Phase>
void ConversionJob::enter(Phase phase) {
    phase_.emplace<Phase>(std::move(phase));
    phaseEntered();
}

/// All that a job asks of its owner. AppDelegate implements it; tests fake it.
class ConversionJob::Controller {
public:
    virtual ~Controller() = default;
    /// Takes the job off the list, if it is there, and moves the queue on. The job outlives this.
    virtual void removeJob(ConversionJob& job) = 0;
    /// Acts on what the job tells. Never blocks and never ends the job: alerts are shown when the
    /// job's own call has returned.
    virtual void jobEvent(const JobEvent& event) = 0;
    /// Who gives out the outputs' places. Shared with work in the background.
    [[nodiscard]] virtual std::shared_ptr<OutputLease::Keeper> outputs() = 0;
    /// Shared likewise.
    [[nodiscard]] virtual std::shared_ptr<ConverterVersion> converterVersion() = 0;
    /// Who compares an output with its source, one after the other.
    [[nodiscard]] virtual Turns& comparisons() = 0;
    /// A job that has left, or could not start, holds this no more; it is the owner's to give back.
    virtual void assertionLeft(PowerAssertionID assertion) = 0;
    /// The preferences as they stand now.
    [[nodiscard]] virtual ConversionSettings conversionSettings() const = 0;
};

}  // namespace reelvane
