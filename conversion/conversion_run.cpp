// Launching the converter and following its run.

#include <utility>

#include "conversion/conversion_job.h"
#include "conversion/job_completion.h"
#include "conversion/stream_plan.h"
#include "media/probe.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/localization.h"
#include "support/ports/main_bundle.h"
#include "support/ports/translations.h"
#include "support/vantor.h"

namespace reelvane {

namespace {

constexpr std::string_view kAssertionName = localizable("Converting MKV file.");

std::string launchProblem(const Translations& translations, LaunchError error,
                          const MainBundle& mainBundle) {
    switch (error) {
        case LaunchError::NotExecutable:
            return toolProblemText(translations, ProbeToolProblem::Broken, mainBundle);
        case LaunchError::NoResources:
            return toolProblemText(translations, ProbeToolProblem::NoResources, mainBundle);
        case LaunchError::ArgumentsTooLong:
            return translations.localized(
                "The conversion can't be started because its command line is too long. Please use "
                "shorter names for the movie and its folders.");
        case LaunchError::None:
        case LaunchError::NotFound:
            break;
    }
    return toolProblemText(translations, ProbeToolProblem::Missing, mainBundle);
}

}  // namespace

void ConversionJob::takeSleepAssertion() {
    sleepAssertion_ = vantor_.ports().powerAssertions.create(localized(vantor_, kAssertionName));
}

void ConversionJob::releaseSleepAssertion() {
    vantor_.ports().powerAssertions.release(sleepAssertion_);
    sleepAssertion_ = kNoPowerAssertion;
}

void ConversionJob::leaveSleepAssertion() {
    const auto assertion = std::exchange(sleepAssertion_, kNoPowerAssertion);
    if (assertion != kNoPowerAssertion) controller_.assertionLeft(assertion);
}

void ConversionJob::launch() {
    const auto ffmpeg = vantor_.ports().mainBundle.pathForResource("ffmpeg");
    auto result = vantor_.ports().processLauncher.launch(
        {.executable = ffmpeg, .arguments = arguments_}, *this);
    if (!result.child) {
        const auto& ports = vantor_.ports();
        refuseStart(launchProblem(ports.translations, result.error, ports.mainBundle));
        return;
    }
    task_ = std::move(result.child);
    startProgressTimer();
    startDate_ = vantor_.ports().dispatcher.now();
    setState(ConversionJobState::Converting);
    controller_.pauseContinueClicked();
}

void ConversionJob::refuseStart(const std::string& problem) {
    problem_ = problem;
    finishedError_ = true;
    lease_.end();
    releaseSleepAssertion();
    auto& vantor = vantor_;
    auto& controller = controller_;
    setState(ConversionJobState::Failed);
    // From here on nothing of the job is touched: the alert's own loop may take it away.
    alert_apptitled(vantor, problem, "OK");
    // In a later turn, so that a queue full of refused jobs does not nest.
    dispatch_async_main(vantor, [&controller] { startNextJobIfIdle(controller); });
}

void ConversionJob::outputReceived(std::string_view bytes) {
    log_.append(bytes);
}

void ConversionJob::startProgressTimer() {
    timer_ = vantor_.ports().dispatcher.every(std::chrono::seconds(1), [this] { progressTimer(); });
}

void ConversionJob::progressTimer() {
    const auto report = progressReader_.readNew(lease_.files()->progressDescriptor());
    if (const auto percent =
            progressPercent(report, fileInfo_.runtimeSeconds, fileInfo_.fileSize)) {
        setProgress(*percent);
    }
}

void ConversionJob::pause() {
    if (isStarting()) {
        startWanted_ = false;  // what the disks answer is undone, or taken up by the next start
        releaseSleepAssertion();
        observers_.notify();
        return;
    }
    // A run that has ended is only being looked at.
    if (state_ != ConversionJobState::Converting || !task_) return;
    timer_.reset();
    task_->suspend();
    setState(ConversionJobState::Paused);
    releaseSleepAssertion();
}

void ConversionJob::continueJob() {
    auto& controller = controller_;  // a start that is refused shows an alert, whose own loop may
                                     // take this job away
    if (state_ == ConversionJobState::Paused) {
        // A run that ended before it could be stopped is only being looked at.
        if (task_) {
            startProgressTimer();
            task_->resume();
            takeSleepAssertion();
        }
        setState(ConversionJobState::Converting);
    } else if (state_ == ConversionJobState::Queued) {
        start();
    } else {
        return;
    }
    controller.pauseContinueClicked();
}

}  // namespace reelvane
