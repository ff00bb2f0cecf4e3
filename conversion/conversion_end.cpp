// How a job ends: its run is over, or the user takes it off the list.

#include <utility>

#include "conversion/conversion_job.h"
#include "conversion/failure_report.h"
#include "conversion/job_completion.h"
#include "conversion/subtitle_arguments.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/logging.h"
#include "support/paths.h"
#include "support/ports/folder_access.h"
#include "support/ports/workspace.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

void ConversionJob::taskFinished(int exitStatus, std::string_view remainingOutput) {
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
    checking_ = std::make_shared<const bool>(true);
    observers_.notify();
    dispatch_async_back(
        vantor_, [this, checking = std::weak_ptr(checking_), &vantor = vantor_, settings,
                  record = fileInfo_, arguments = arguments_, log = jobOutput_] {
            auto check = checkOutput(vantor.ports().translations, record, arguments, log);
            // Where the source is to go, the output must not be in the system's memory only.
            check.onDisk = settings.autoRemove && check.proof.problem.empty() &&
                           isOnDisk(*record.destinationURL);
            dispatch_async_main(vantor, [this, checking, settings, check = std::move(check)] {
                if (checking.expired()) return;
                checking_.reset();
                outputCheck_ = check;
                runEnded(settings, !check.proof.problem.empty());
            });
        });
}

void ConversionJob::runEnded(const ConversionSettings& settings, bool failed) {
    // An alert's own loop, or the next job's, may take this job away before all is done.
    const std::weak_ptr<const bool> alive = alive_;
    auto& vantor = vantor_;
    auto& controller = controller_;
    const EndedRun run{.fileName = Fennimar::validUtf8(fileInfo_.fileName),
                       .output = fileInfo_.destinationURL.value_or(std::filesystem::path()),
                       .failed = failed,
                       .endsEarly = warning()};
    if (failed) {
        fail();
    } else {
        succeed(settings);
    }
    if (!alive.expired()) {
        stopDate_ = vantor.ports().dispatcher.now();
        setProgress(100);
    }
    followUp(vantor, controller, settings, run);
}

void ConversionJob::closeRun(std::string_view remainingOutput) {
    timer_.reset();
    jobOutput_.append(remainingOutput);
    task_.reset();
    progressFile_.remove();
    releaseSleepAssertion();
    if (!aacFile_.empty()) Fennimar::removeFile(aacFile_);
}

void ConversionJob::fail() {
    deleteOutput();
    finishedError_ = true;
    auto& vantor = vantor_;
    const bool full = ranOutOfSpace(jobOutput_);
    const auto explanation = full ? diagnosis() : Diagnosis{};
    setState(ConversionJobState::Failed);
    if (full) alert(vantor, explanation.title, explanation.message, "OK");
}

void ConversionJob::succeed(const ConversionSettings& settings) {
    auto& vantor = vantor_;
    const auto source = fileInfo_.fileURL;
    auto& controller = controller_;
    // What is missing from a short output may still be in the source, and where nobody knows how
    // long the source is, nobody can tell.
    const bool proven = outputCheck_.onDisk && !outputCheck_.proof.endsEarly &&
                        fileInfo_.runtimeSeconds.value_or(0) > 0;
    finishedOK_ = true;
    ownsOutput_ = false;  // it is the user's now
    settleOutput();
    setState(ConversionJobState::Finished);
    if (settings.autoClean) remove();
    if (settings.autoRemove && proven) {
        removeSource(vantor, controller, source, settings.autoRemoveType);
    } else if (settings.autoRemove) {
        vn_log_level(LogError, "Info: kept %@: it can't be told whether all of it was converted",
                     source);
    }
}

std::string ConversionJob::warning() const {
    return endsEarlyText(vantor_.ports().translations, Fennimar::validUtf8(fileInfo_.fileName),
                         outputCheck_.proof, fileInfo_.runtimeSeconds);
}

Diagnosis ConversionJob::diagnosis() const {
    const auto settings = controller_.conversionSettings();
    const auto arguments = Fennimar::joined(arguments_, " ");
    return diagnose(vantor_.ports().translations,
                    {.startProblem = startProblem_,
                     .jobOutput = jobOutput_,
                     .incompleteOutput = !outputCheck_.proof.problem.empty(),
                     .arguments = arguments,
                     .embeddedSubtitlesConverted = mapsEmbeddedSubtitles(fileInfo_, settings),
                     .externalSubtitles = fileInfo_.subtitleFileURL.has_value()});
}

void ConversionJob::reveal() {
    auto& workspace = vantor_.ports().workspace;
    if (state_ == ConversionJobState::Failed) {
        explainFailure(vantor_, diagnosis(),
                       {.arguments = Fennimar::joined(arguments_, " "),
                        .jobOutput = jobOutput_,
                        .recordDescription = description(fileInfo_)});
    } else if (workspace.isShiftKeyHeld()) {
        workspace.reveal(fileInfo_.fileURL);
    } else if (fileInfo_.destinationURL) {
        workspace.reveal(*fileInfo_.destinationURL);
    }
}

void ConversionJob::remove() {
    if (isStarting()) releaseSleepAssertion();
    leaveAttempt();
    checking_.reset();
    timer_.reset();
    if (task_) task_->terminate();
    task_.reset();
    // Before its start, and after a failure that left nothing, an automatic name may be another's.
    const bool agreedTo =
        state_ == ConversionJobState::Queued && fileInfo_.outputClaim == OutputClaim::Chosen;
    progressFile_.remove();
    if (ownsOutput_ || agreedTo) {
        deleteOutput();
    } else {
        settleOutput();
    }
    if (const auto folder = std::exchange(fileInfo_.securityURL, {})) {
        vantor_.ports().folderAccess.stopAccessing(*folder);
    }
    auto& controller = controller_;
    controller.removeJob(*this);  // the job may be gone from here on
    startNextJobIfIdle(controller);
}

void ConversionJob::deleteOutput() {
    ownsOutput_ = false;
    if (fileInfo_.destinationURL) {
        controller_.discardOutput(*fileInfo_.destinationURL, fileInfo_.fileURL);
    }
}

void ConversionJob::deleteReservation() {
    if (std::exchange(ownsOutput_, false)) deleteOutput();
    fileInfo_.outputClaim = OutputClaim::None;
}

void ConversionJob::settleOutput() {
    if (fileInfo_.destinationURL) controller_.outputSettled(*fileInfo_.destinationURL);
}

}  // namespace reelvane
