#include "ui/job_commands.h"

#include <algorithm>
#include <utility>

#include <QObject>

#include "app/app_delegate.h"
#include "support/alerts.h"
#include "support/ports/workspace.h"
#include "support/vantor.h"
#include "ui/job_controls.h"
#include "ui/job_facts.h"

namespace reelvane {
namespace {

bool isUnderWay(const ConversionJob* job) {
    return job->state() == ConversionJobState::Converting ||
           job->state() == ConversionJobState::Paused;
}

}  // namespace

JobCommands::JobCommands(const UiContext& context, OpenDetails openDetails)
    : context_(context),
      openDetails_(std::move(openDetails)) {}

void JobCommands::pauseOrContinue(ConversionJob& job) {
    const auto controls = jobControls(job.state());
    if (controls.pauses) {
        job.pause();
    } else if (controls.continues) {
        context_.controller.continueJob(job);
    }
}

bool JobCommands::canPauseOrContinue(const ConversionJob& job) const {
    if (jobControls(job.state()).pauses) return !job.isBeingChecked();
    return context_.controller.queueControl().canContinue(job);
}

void JobCommands::reveal(ConversionJob& job) {
    if (jobControls(job.state()).reveals) {
        job.reveal();
    } else {
        openDetails_(job);
    }
}

void JobCommands::showSource(const ConversionJob& job) const {
    context_.vantor.ports().workspace.reveal(job.fileInfo().fileURL);
}

void JobCommands::copyCommandLine(const ConversionJob& job) const {
    if (const auto line = commandLine(context_, detailsNow(context_, job)); !line.empty()) {
        copyBytes(line);
    }
}

void JobCommands::remove(const std::vector<ConversionJob*>& jobs) {
    context_.controller.removeJobs(jobs);
}

bool JobCommands::confirmRemoval(std::vector<ConversionJob*>& jobs) {
    if (jobs.size() < 2 || std::ranges::none_of(jobs, isUnderWay)) return true;
    const auto watching = context_.controller.queue().observeMembership(
        [&jobs](ConversionJob& job, JobQueue::Membership membership) {
            if (membership == JobQueue::Membership::Ends) std::erase(jobs, &job);
        });
    const auto title = QObject::tr("Remove %1 movies from the list?").arg(jobs.size());
    const auto message = QObject::tr(
        "One of them is being converted. What has been converted of it so far will be deleted.");
    return alert(context_.vantor, title.toStdString(), message.toStdString(),
                 QObject::tr("Remove").toStdString(),
                 QObject::tr("Cancel").toStdString()) == kFirstButton;
}

}  // namespace reelvane
