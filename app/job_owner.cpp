#include "app/job_owner.h"

#include <utility>

#include "app/lifecycle.h"
#include "app/preference_table.h"
#include "app/settings_reader.h"
#include "support/ports/main_bundle.h"
#include "support/vantor.h"

namespace reelvane {

JobOwner::JobOwner(Vantor& vantor, Parts parts)
    : vantor_(vantor),
      parts_(std::move(parts)),
      version_(std::make_shared<ConverterVersion>(
          vantor.ports().processLauncher, vantor.ports().mainBundle.pathForResource("ffmpeg"))),
      errands_(vantor.ports().dispatcher) {}

void JobOwner::addJob(std::unique_ptr<ConversionJob> job, bool othersWait) {
    // What a job will read is no more to be written over than what another one will write.
    parts_.outputs->hold(job->fileInfo().fileURL);
    if (!parts_.control.paused() && !parts_.queue.isAtWork() && !othersWait) job->start();
    const bool atBottom = get(vantor_.preferences(), kInsertJobsAtBottom);
    parts_.queue.insertJob(std::move(job),
                           atBottom ? JobQueue::InsertAt::Bottom : JobQueue::InsertAt::Top);
    parts_.control.updateWindowTitle();
}

void JobOwner::removeJob(ConversionJob& job) {
    releaseNames(job);
    // It lives until a later turn: it is usually its own call-back that takes it off.
    removed_.push_back(parts_.queue.takeJob(job));
    errands_.later([this] { removed_.clear(); });
    parts_.control.updateWindowTitle();
    startNextJobIfIdle();
}

void JobOwner::releaseNames(const ConversionJob& job) {
    parts_.outputs->release(job.fileInfo().fileURL);
    if (job.finishedOK() || job.finishedError()) return;  // it has given its output's name back
    if (const auto& output = job.fileInfo().destinationURL) parts_.outputs->release(*output);
}

void JobOwner::jobEvent(const JobEvent& event) {
    events_.notify(event);
    const bool isShown = !event.text.empty() && !parts_.unattended;
    if (!isShown && event.kind != JobEvent::Kind::StartRefused) {
        actOn(event);
        return;
    }
    errands_.later([this, event, isShown] {
        if (isShown) showAlert(vantor_, event);
        actOn(event);
    });
}

void JobOwner::actOn(const JobEvent& event) {
    switch (event.kind) {
        case JobEvent::Kind::WentOn:
            parts_.control.jobWentOn();
            break;
        case JobEvent::Kind::StartRefused:
            startNextJobIfIdle();
            break;
        case JobEvent::Kind::RunFinished:
        case JobEvent::Kind::RunFailed:
            followRun(event);
            break;
        case JobEvent::Kind::SourceDecided:
            quitIfDone();
            break;
        case JobEvent::Kind::SourceMissing:
        case JobEvent::Kind::NoSpace:
        case JobEvent::Kind::Explained:
            break;
    }
}

void JobOwner::followRun(const JobEvent& event) {
    startNextJobIfIdle();
    if (event.notification) vantor_.ports().notifications.deliver(*event.notification);
    if (event.kind == JobEvent::Kind::RunFinished) {
        vantor_.preferences().addToInt(kConvertedFileCount.key, 1);
        parts_.lifecycle.increaseUsages(true, true);
    }
    quitIfDone();
}

void JobOwner::startNextJobIfIdle() {
    if (!parts_.queue.isAtWork()) parts_.control.startNextJobInQueue();
}

void JobOwner::quitIfDone() {
    if (conversionSettings().quitAfterConversion && comparisons_.isIdle()) parts_.rest.quitIfDone();
}

ConversionSettings JobOwner::conversionSettings() const {
    return readConversionSettings(vantor_.preferences());
}

}  // namespace reelvane
