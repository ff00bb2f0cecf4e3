// How a job ends: its run is over, or the user takes it off the list.

#include <utility>

#include "conversion/conversion_job.h"
#include "conversion/diagnosis.h"
#include "conversion/job_completion.h"
#include "conversion/stream_plan.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/folder_access.h"
#include "support/ports/main_bundle.h"
#include "support/ports/workspace.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

void ConversionJob::taskFinished(int exitStatus, std::string_view remainingOutput) {
    if (aside_) {
        missedEnd_ = [this, exitStatus, rest = std::string(remainingOutput)] {
            taskFinished(exitStatus, rest);
        };
        return;
    }
    const auto settings = controller_.conversionSettings();
    closeRun(remainingOutput);
    // The converter's word is not enough: it also ends with 0 over a file that is broken.
    if (exitStatus == 0) {
        checkRun(settings);
    } else {
        runEnded(settings, true);
    }
}

void ConversionJob::checkRun(const ConversionSettings& settings) {
    checking_ = true;
    observers_.notify();
    errands_.run(
        [&translations = vantor_.ports().translations, files = lease_.files(), record = fileInfo_,
         planned = outputTracks(plan_, fileInfo_), log = log_.searched(),
         autoRemove = settings.autoRemove, tools = cueTools()] {
            if (!files->isOutputThere()) return OutputCheck{.isGone = true};
            auto check = checkOutput(translations, record, planned, log, files->heldPath());
            if (!check.proof.problem.empty()) return check;
            addNotes(check.notes, cueNotes(translations, record, planned, check.textCounts, tools));
            const auto size = Fennimar::fileSize(files->heldPath());
            check.details = hasDoubt(check.notes) ? contentText(translations, check.proof.seconds,
                                                                check.proof.tracks, size)
                                                  : proofText(translations, check.proof, size);
            // Where the source is to go, the output must not be in the system's memory only.
            check.onDisk = autoRemove && isOnDisk(files->heldPath());
            return check;
        },
        [this, settings](const OutputCheck& check) {
            outputCheck_ = check;
            missedEnd_ = [this, settings] { keepOutput(settings); };
            if (!aside_) followUpEnd();
        });
}

void ConversionJob::keepOutput(const ConversionSettings& settings) {
    if (outputCheck_.isGone) problem_ = placeProblem(RunFiles::Keeping::Gone);
    if (outputCheck_.isGone || !outputCheck_.proof.problem.empty()) {
        checking_ = false;
        runEnded(settings, true);
        return;
    }
    struct Kept {
        RunFiles::Keeping keeping;
        std::optional<FileVersion> identity;
    };
    errands_.run(
        [files = lease_.files()] {
            const auto keeping = files->keep();
            return Kept{.keeping = keeping, .identity = fileVersionOf(files->keptPath())};
        },
        [this, settings](const Kept& kept) {
            checking_ = false;
            const bool isKept = kept.keeping == RunFiles::Keeping::Kept;
            if (isKept) {
                moveDestination(lease_.files()->keptPath());
                outputCheck_.identity = kept.identity;
            } else {
                problem_ = placeProblem(kept.keeping);
                outputCheck_.details.clear();
            }
            missedEnd_ = [this, settings, isKept] { runEnded(settings, !isKept); };
            if (!aside_) followUpEnd();
        });
}

CueTools ConversionJob::cueTools() const {
    const auto& ports = vantor_.ports();
    return {.launcher = &ports.processLauncher,
            .ffmpeg = ports.mainBundle.pathForResource("ffmpeg"),
            .stop = leaving_.get_token()};
}

void ConversionJob::runEnded(const ConversionSettings& settings, bool failed) {
    // An alert's own loop, or the next job's, may take this job away before all is done.
    const std::weak_ptr<const bool> alive = alive_;
    auto& vantor = vantor_;
    auto& controller = controller_;
    const EndedRun run{.fileName = Fennimar::validUtf8(fileInfo_.fileName),
                       .output = fileInfo_.destinationURL.value_or(std::filesystem::path()),
                       .failed = failed,
                       .warning = warning()};
    if (failed) {
        fail();
    } else {
        succeed(settings);
    }
    if (!alive.expired()) {
        stopDate_ = vantor.ports().dispatcher.now();
        setProgress(100);
    }
    followUp(vantor, controller, run);
}

void ConversionJob::closeRun(std::string_view remainingOutput) {
    timer_.reset();
    log_.appendRest(remainingOutput);
    task_.reset();
    releaseSleepAssertion();
    if (!aacFile_.empty()) Fennimar::removeFile(aacFile_);
}

void ConversionJob::fail() {
    lease_.end();
    finishedError_ = true;
    auto& vantor = vantor_;
    const bool full = ranOutOfSpace(log_.searched());
    const auto explanation = full ? diagnosis() : Diagnosis{};
    const auto title =
        makeString("%@: %@", Fennimar::validUtf8(fileInfo_.fileName), explanation.title);
    setState(ConversionJobState::Failed);
    if (full) alert(vantor, title, explanation.message, "OK");
}

void ConversionJob::succeed(const ConversionSettings& settings) {
    finishedOK_ = true;
    lease_.end();  // the output is the user's now
    if (settings.autoRemove) decideOnSource(settings);
    setState(ConversionJobState::Finished);
    // A warning stays until the user has seen it.
    if (settings.autoClean && !isComparing() && warning().empty()) remove();
}

void ConversionJob::decideOnSource(const ConversionSettings& settings) {
    const bool toTrash = settings.autoRemoveType == 0;
    const auto kind = hasDoubt(notes())                           ? SourceFate::Kind::Doubtful
                      : fileInfo_.runtimeSeconds.value_or(0) <= 0 ? SourceFate::Kind::NoLength
                      : outputCheck_.proof.isShort                ? SourceFate::Kind::Short
                      : fileInfo_.hasOtherPictures                ? SourceFate::Kind::OtherPicture
                      : !outputCheck_.onDisk                      ? SourceFate::Kind::NotOnDisk
                                                                  : SourceFate::Kind::Removed;
    if (kind != SourceFate::Kind::Removed) {
        tellOfSource({.kind = kind}, toTrash);
        return;
    }
    remover_ = std::make_unique<SourceRemover>(
        vantor_, controller_.comparisons(),
        SourceRemoval{.source = {.path = fileInfo_.fileURL,
                                 .stream = makeString("0:%i", fileInfo_.videoTrackID.value_or(0)),
                                 .codec = fileInfo_.videoCodec,
                                 .hasEdits = readsEdits(fileInfo_.demuxer)},
                      .sourceIdentity = fileInfo_.identity,
                      .output = {.path = *fileInfo_.destinationURL,
                                 .stream = "0:v:0",
                                 .codec = fileInfo_.videoCodec,
                                 .hasEdits = true},
                      .outputIdentity = outputCheck_.identity,
                      .toTrash = toTrash},
        [this, settings](const SourceFate& fate) { sourceDecided(settings, fate); });
}

void ConversionJob::tellOfSource(const SourceFate& fate, bool toTrash) {
    const auto text = sourceFateText(vantor_.ports().translations,
                                     Fennimar::validUtf8(fileInfo_.fileName), fate, toTrash);
    if (text.empty()) return;
    addNotes(outputCheck_.notes, {{.kind = JobNote::Kind::SourceKept, .text = text}});
    vn_log_level(LogError, "Info: %@ (%@)", text, fileInfo_.fileURL);
}

void ConversionJob::sourceDecided(const ConversionSettings& settings, const SourceFate& fate) {
    auto& controller = controller_;
    const std::weak_ptr<const bool> alive = alive_;
    remover_.reset();
    tellOfSource(fate, settings.autoRemoveType == 0);
    observers_.notify();
    if (!alive.expired() && settings.autoClean && warning().empty()) remove();
    controller.quitIfDone();
}

std::string ConversionJob::warning() const {
    return warningText(notes());
}

Diagnosis ConversionJob::diagnosis() const {
    const auto arguments = Fennimar::joined(arguments_, " ");
    const auto name = Fennimar::validUtf8(fileInfo_.fileName);
    const bool blamed = blamesSource(outputCheck_.proof, log_.searched());
    return diagnose(vantor_.ports().translations,
                    {.startProblem = problem_,
                     .jobOutput = log_.searched(),
                     .shownOutput = log_.shown(),
                     .incompleteOutput = !outputCheck_.proof.problem.empty(),
                     .damagedSource = blamed ? std::string_view(name) : std::string_view(),
                     .arguments = arguments,
                     .embeddedSubtitlesConverted = !plan_.subtitles.empty(),
                     .externalSubtitles = plan_.externalSubtitle});
}

void ConversionJob::reveal() {
    auto& workspace = vantor_.ports().workspace;
    if (state_ == ConversionJobState::Failed) {
        explainFailure(vantor_, diagnosis(),
                       {.arguments = Fennimar::joined(arguments_, " "),
                        .log = log_.shown(),
                        .recordDescription = description(fileInfo_)});
    } else if (workspace.isShiftKeyHeld()) {
        workspace.reveal(fileInfo_.fileURL);
    } else if (fileInfo_.destinationURL) {
        workspace.reveal(*fileInfo_.destinationURL);
    }
}

void ConversionJob::remove() {
    if (isStarting()) releaseSleepAssertion();
    leaveSleepAssertion();
    startWanted_ = false;
    leaving_.request_stop();
    errands_.forget();
    checking_ = false;
    timer_.reset();
    if (task_) task_->terminate();
    task_.reset();
    remover_.reset();  // the source stays
    lease_.end();
    if (const auto folder = std::exchange(fileInfo_.securityURL, {})) {
        vantor_.ports().folderAccess.stopAccessing(*folder);
    }
    auto& controller = controller_;
    controller.removeJob(*this);  // the job may be gone from here on
    startNextJobIfIdle(controller);
}

std::string ConversionJob::placeProblem(RunFiles::Keeping keeping) const {
    const auto format =
        keeping == RunFiles::Keeping::Unreplaced
            ? localizable(
                  "The new %@ is whole, but it could not take the place of the old one, so "
                  "it was not kept, and the old one is as it was. Please check the folder's "
                  "permissions and try again.")
            : localizable(
                  "%@ was deleted or replaced by another program while it was converted. "
                  "What lies there now was left alone. Please try again.");
    return makeString(localized(vantor_, format),
                      Fennimar::validUtf8(fileInfo_.destinationURL->filename().native()));
}

void ConversionJob::setAside() {
    pause();
    aside_ = true;
    if (!std::exchange(remover_, {})) return;
    // Nobody who has taken a movie off the list wants its source to go; it is decided anew later.
    missedEnd_ = [this] {
        decideOnSource(controller_.conversionSettings());
        observers_.notify();
    };
}

void ConversionJob::bringBack() {
    aside_ = false;
    followUpEnd();
}

void ConversionJob::followUpEnd() {
    if (const auto missed = std::exchange(missedEnd_, {})) missed();
}

}  // namespace reelvane
