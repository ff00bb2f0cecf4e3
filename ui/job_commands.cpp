#include "ui/job_commands.h"

#include <utility>

#include "app/app_delegate.h"
#include "support/ports/workspace.h"
#include "support/vantor.h"
#include "ui/job_controls.h"
#include "ui/job_facts.h"

namespace reelvane {
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

RowNote JobCommands::rowNote(const ConversionJob& job) const {
    return reelvane::rowNote(context_.vantor.ports().translations, job);
}

void JobCommands::copyCommandLine(const ConversionJob& job) const {
    if (const auto line = commandLine(context_, detailsNow(context_, job)); !line.empty()) {
        copyBytes(line);
    }
}

void JobCommands::remove(const std::vector<ConversionJob*>& jobs) {
    context_.controller.removeJobs(jobs);
}

}  // namespace reelvane
