// Launching the converter and following its run.

#include <utility>

#include "conversion/conversion_job.h"
#include "conversion/stream_plan.h"
#include "media/probe.h"
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

SleepAssertion ConversionJob::stayAwake() const {
    return {vantor_.ports().powerAssertions, localized(vantor_, kAssertionName)};
}

void ConversionJob::leaveAwake(SleepAssertion& awake) {
    const auto assertion = awake.leave();
    if (assertion != kNoPowerAssertion) controller_.assertionLeft(assertion);
}

void ConversionJob::launch() {
    const auto& ports = vantor_.ports();
    auto result = ports.processLauncher.launch(
        {.executable = ports.mainBundle.pathForResource("ffmpeg"), .arguments = run_.arguments},
        *this);
    if (!result.child) {
        refuseStart(launchProblem(ports.translations, result.error, ports.mainBundle));
        return;
    }
    run_.started = ports.dispatcher.now();
    auto& starting = std::get<StartingJob>(phase_);
    enter(RunningJob{.lease = std::move(starting.lease),
                     .child = std::move(result.child),
                     .following = follow(std::move(starting.awake))});
    tell(JobEvent::Kind::WentOn);
}

void ConversionJob::refuseStart(const std::string& problem) {
    result_.problem = problem;
    enter(FailedJob());
    tell(JobEvent::Kind::StartRefused, vantor_.appName(), problem);
}

void ConversionJob::outputReceived(std::string_view bytes) {
    run_.log.append(bytes);
}

RunningJob::Following ConversionJob::follow(SleepAssertion awake) {
    auto& dispatcher = vantor_.ports().dispatcher;
    return {.timer = dispatcher.every(std::chrono::seconds(1), [this] { progressTimer(); }),
            .awake = std::move(awake)};
}

void ConversionJob::progressTimer() {
    auto& running = std::get<RunningJob>(phase_);
    const auto report = running.progress.readNew(running.lease.files()->progressDescriptor());
    if (const auto percent =
            progressPercent(report, fileInfo_.runtimeSeconds, fileInfo_.fileSize)) {
        run_.progress = *percent;
        observers_.notify();
    }
}

void ConversionJob::pause() {
    if (auto* const starting = std::get_if<StartingJob>(&phase_)) {
        // What the disks answer is undone, or taken up by the next start.
        enter(QueuedJob{.abandoned = std::move(starting->disks)});
    } else if (auto* const running = std::get_if<RunningJob>(&phase_);
               running != nullptr && running->following) {
        running->following.reset();
        running->child->suspend();
        observers_.notify();
    }
}

void ConversionJob::continueJob() {
    if (auto* const running = std::get_if<RunningJob>(&phase_)) {
        if (running->following) return;
        running->following = follow(stayAwake());
        running->child->resume();
        observers_.notify();
    } else if (auto* const checking = std::get_if<CheckingJob>(&phase_)) {
        // The run is over, so there is nothing to go on but its name.
        if (checking->shown != ConversionJobState::Paused) return;
        checking->shown = ConversionJobState::Converting;
        observers_.notify();
    } else if (std::holds_alternative<QueuedJob>(phase_)) {
        start();
    } else if (!isStarting()) {
        return;
    }
    tell(JobEvent::Kind::WentOn);
}

}  // namespace reelvane
