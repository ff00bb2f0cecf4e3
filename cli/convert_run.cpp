#include "cli/convert_run.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/app_delegate.h"
#include "app/opened_files.h"
#include "app/settings_reader.h"
#include "conversion/job_details.h"
#include "conversion/stream_plan.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

// Before that, speed and remaining time say nothing.
constexpr double kTellingPercent = 1;
constexpr double kTellingSeconds = 2;

}  // namespace

ConvertRun::ConvertRun(Vantor& vantor, AppDelegate& controller, ConvertReporter& reporter,
                       std::function<void()> ended)
    : vantor_(vantor),
      controller_(controller),
      reporter_(reporter),
      ended_(std::move(ended)),
      begin_(vantor.ports().dispatcher.now()),
      errands_(vantor.ports().dispatcher) {
    subscriptions_.push_back(controller.queue().observeMembership(
        [this](ConversionJob& job, JobQueue::Membership change) {
            if (change == JobQueue::Membership::Begins) {
                follow(job);
            } else {
                followed_.erase(&job);  // its address may come back as another one's
                if (lastStarted_ == &job) lastStarted_ = nullptr;
            }
            checkLater();
        }));
    subscriptions_.push_back(controller.intake().observeRefusals(
        [this](const std::filesystem::path& file, const std::vector<VettingAlert>& alerts) {
            ++read_;
            ++refusedMovies_;
            refuse(takeGivenName(file), alerts);
        }));
    subscriptions_.push_back(
        controller.jobOwner().observeEvents([this](const JobEvent& event) { jobTold(event); }));
    subscriptions_.push_back(controller.intake().observeIdle([this] { checkLater(); }));
    subscriptions_.push_back(controller.intake().present().observe([this] { showReading(); }));
}

ConvertRun::~ConvertRun() = default;

TimePoint ConvertRun::now() const {
    return vantor_.ports().dispatcher.now();
}

void ConvertRun::start(const CheckedInputs& inputs) {
    for (const auto& input : inputs.refused) {
        if (input.isFound) {
            reporter_.warned(input.given, input.alert.message);
        } else {
            refuse(input.given, std::span(&input.alert, 1));
        }
    }
    std::vector<std::filesystem::path> paths;
    for (const auto& file : inputs.files) {
        given_.emplace(file.path, file.given);
        paths.push_back(file.path);
        if (isMovieFile(file.path)) ++movies_;
    }
    if (!paths.empty()) controller_.intake().openFiles(paths);
    checkLater();
}

void ConvertRun::alerted(const AlertContent& content) {
    // What offers a choice is about no single file, and may be the last thing that is told.
    if (content.buttons.size() > 1) {
        reporter_.alerted(content.title, content.message);
        return;
    }
    heldAlerts_.add(content);
    if (over_) tellAlerts();
    checkLater();
}

void ConvertRun::tellAlerts() {
    for (const auto& alert : heldAlerts_.take()) reporter_.alerted(alert.title, alert.message);
}

void ConvertRun::abandon() {
    over_ = true;
    tellAlerts();
    for (const auto& [job, followed] : followed_) {
        if (followed.begun && !followed.ended) reporter_.interrupted(followed.subject);
    }
    subscriptions_.clear();
    followed_.clear();
}

void ConvertRun::refuse(const std::string& given, std::span<const VettingAlert> alerts) {
    ++summary_.refused;
    reporter_.refused(given, alerts);
    checkLater();
}

std::string ConvertRun::takeGivenName(const std::filesystem::path& path) {
    const auto found = given_.lower_bound(path);  // files are taken in the order given
    if (found == given_.end() || found->first != path) return path.native();
    return std::move(given_.extract(found).mapped());
}

void ConvertRun::showReading() {
    const bool converts = controller_.queue().jobCountWithState(ConversionJobState::Converting) > 0;
    if (controller_.intake().state() == IntakeState::Reading && !converts) {
        reporter_.reading(std::min(read_ + 1, movies_), movies_);
    }
}

void ConvertRun::follow(ConversionJob& job) {
    ++read_;
    const auto& record = job.fileInfo();
    auto& followed = followed_[&job];
    followed.subject = {.file = takeGivenName(record.fileURL),
                        .output = record.destinationURL.value_or(std::filesystem::path())};
    const auto settings = readConversionSettings(vantor_.preferences());
    if (planStreams(record, job.audioTrackIndex(), settings).externalSubtitle) {
        followed.subject.subtitle = *record.subtitleFileURL;
        followed.subject.subtitleEncoding = subtitleEncoding(record.subtitleFormat, settings);
    }
    followed.subscription = job.observe([this, &job] { jobChanged(job); });
    reporter_.queued(followed.subject);
    jobChanged(job);  // it may have been started before it came into the list
}

void ConvertRun::jobChanged(const ConversionJob& job) {
    const auto found = followed_.find(&job);
    if (found == followed_.end()) return;
    auto& followed = found->second;
    if (followed.ended) {
        tellNotes(followed, job);
        checkLater();
        return;
    }
    // A start may have had to take another name.
    if (job.fileInfo().destinationURL) followed.subject.output = *job.fileInfo().destinationURL;
    switch (job.state()) {
        case ConversionJobState::Queued:
        case ConversionJobState::Paused:
            break;
        case ConversionJobState::Converting:
            tellStart(followed, job);
            tellProgress(followed, job);
            break;
        case ConversionJobState::Finished:
            tellFinished(followed, job);
            break;
        case ConversionJobState::Failed: {
            const auto diagnosis = job.diagnosis();
            tellFailed(followed, diagnosis.title, diagnosis.message, job.log().shown());
            break;
        }
    }
    checkLater();
}

void ConvertRun::jobTold(const JobEvent& event) {
    // Of the other alerts a failure says the same.
    const bool refuses = event.kind == JobEvent::Kind::NoSpace;
    if (!refuses && event.kind != JobEvent::Kind::SourceMissing) return;
    if (refuses) refusal_ = event.text;
    heldAlerts_.add({.title = event.title, .message = event.text});
    checkLater();
}

void ConvertRun::tellStart(FollowedJob& followed, const ConversionJob& job) {
    if (std::exchange(followed.begun, true)) return;
    followed.started = now();
    reporter_.started(followed.subject, job.arguments());
}

void ConvertRun::tellProgress(FollowedJob& followed, const ConversionJob& job) {
    if (job.progress() <= followed.toldPercent) return;
    followed.toldPercent = job.progress();
    ConvertProgress progress{.percent = job.progress(),
                             .status = job.stateInfoString(),
                             .elapsed = Fennimar::secondsBetween(followed.started, now()),
                             .number = summary_.finished + summary_.failed + refusedMovies_ + 1,
                             .files = movies_};
    const auto runtime = job.fileInfo().runtimeSeconds;
    if (progress.percent >= kTellingPercent && progress.elapsed >= kTellingSeconds) {
        progress.remaining = job.timeLeft();
        if (runtime) progress.speed = progress.percent / 100 * *runtime / progress.elapsed;
    }
    reporter_.progress(followed.subject, progress);
}

void ConvertRun::tellFinished(FollowedJob& followed, const ConversionJob& job) {
    followed.ended = true;
    const auto bytes = Fennimar::fileSize(followed.subject.output);
    ++summary_.finished;
    summary_.bytes += bytes;
    followed.toldNotes = job.notes().size();
    reporter_.finished(followed.subject, {.seconds = job.conversionSeconds(),
                                          .bytes = bytes,
                                          .details = job.details(),
                                          .tracks = tracksOfRun(vantor_.ports().translations, job),
                                          .notes = job.notes()});
}

void ConvertRun::tellNotes(FollowedJob& followed, const ConversionJob& job) {
    const auto& notes = job.notes();
    for (; followed.toldNotes < notes.size(); ++followed.toldNotes) {
        const auto& note = notes[followed.toldNotes];
        if (note.kind != JobNote::Kind::Remark) reporter_.warned(followed.subject.file, note.text);
    }
}

void ConvertRun::tellFailed(FollowedJob& followed, const std::string& title,
                            const std::string& message, const std::string& log) {
    followed.ended = true;
    ++summary_.failed;
    heldAlerts_.drop(message);
    reporter_.failed(followed.subject, title, message, log);
}

void ConvertRun::checkLater() {
    if (over_ || std::exchange(checking_, true)) return;
    errands_.later([this] {
        checking_ = false;
        if (!over_) check();
    });
}

void ConvertRun::check() {
    // What a start tells belongs to its job, should that be refused.
    const bool starts = lastStarted_ != nullptr && lastStarted_->isStarting();
    if (!isIdle()) {
        if (!starts) tellAlerts();
        return;
    }
    if (auto* const next = controller_.queue().nextRunnableJob()) {
        // Twice, since what an earlier conversion left may just be being deleted.
        if (std::exchange(lastStarted_, next) == next) {
            dropRefusedStart(*next);
            tellAlerts();
        } else {
            controller_.queueControl().startNextJobInQueue();
        }
        checkLater();
        return;
    }
    tellAlerts();
    over_ = true;
    summary_.seconds = Fennimar::secondsBetween(begin_, now());
    ended_();
}

bool ConvertRun::isIdle() const {
    return !controller_.intake().isBusy() && !controller_.queue().isAtWork() &&
           controller_.jobOwner().comparisons().isIdle();
}

void ConvertRun::dropRefusedStart(const ConversionJob& next) {
    const auto found = followed_.find(&next);
    if (found != followed_.end()) {
        tellFailed(found->second, vantor_.appName(), refusal_, next.log().shown());
    }
    refusedStarts_.push_back(controller_.queue().takeJob(next));
}

}  // namespace reelvane
