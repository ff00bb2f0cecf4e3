#include "ui/jobs/job_commands.h"

#include <utility>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "app/app_delegate.h"
#include "app/settings_reader.h"
#include "support/make_string.h"
#include "support/ports/main_bundle.h"
#include "support/ports/workspace.h"
#include "support/vantor.h"

namespace reelvane {
JobCommands::JobCommands(const UiContext& context, OpenDetails openDetails)
    : context_(context),
      openDetails_(std::move(openDetails)) {}

void JobCommands::pauseOrContinue(ConversionJob& job) {
    const auto controls = jobControls(job.state());
    if (controls.pauses) {
        job.pause();
    } else if (controls.continues) {
        context_.controller.queueControl().continueJob(job);
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
    context_.controller.queueControl().removeJobs(jobs);
}

JobDetails detailsNow(const UiContext& context, const ConversionJob& job) {
    const auto& vantor = context.vantor;
    return jobDetails(vantor.ports().translations, job,
                      readConversionSettings(vantor.preferences()),
                      docDirAsItStands(vantor.ports().host, vantor.ports().mainBundle));
}

bool hasCommandLine(const ConversionJob& job) {
    return job.state() == ConversionJobState::Queued || !job.arguments().empty();
}

std::string commandLine(const UiContext& context, const JobDetails& details) {
    if (details.arguments.empty()) return {};
    const auto ffmpeg = context.vantor.ports().mainBundle.pathForResource("ffmpeg");
    return shellQuoted(ffmpeg.native()) + ' ' + shellQuotedLine(details.arguments);
}

void copyBytes(const std::string& bytes) {
    auto* const data = new QMimeData;  // the clipboard takes it over
    data->setData("text/plain", QByteArray::fromStdString(bytes));
    QGuiApplication::clipboard()->setMimeData(data);
}

}  // namespace reelvane
