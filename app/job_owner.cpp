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
    if (!parts_.control.paused() && !isAtWork() && !othersWait) job->start();
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
}

void JobOwner::releaseNames(const ConversionJob& job) {
    parts_.outputs->release(job.fileInfo().fileURL);
    if (job.finishedOK() || job.finishedError()) return;  // it has given its output's name back
    if (const auto& output = job.fileInfo().destinationURL) parts_.outputs->release(*output);
}

void JobOwner::conversionEnded(bool succeeded) {
    if (!succeeded) return;
    vantor_.preferences().addToInt(kConvertedFileCount.key, 1);
    parts_.lifecycle.increaseUsages(true, true);
}

void JobOwner::quitIfDone() {
    if (conversionSettings().quitAfterConversion && comparisons_.isIdle()) parts_.rest.quitIfDone();
}

ConversionSettings JobOwner::conversionSettings() const {
    return readConversionSettings(vantor_.preferences());
}

}  // namespace reelvane
