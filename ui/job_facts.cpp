#include "ui/job_facts.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "app/app_delegate.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/shell_quoting.h"
#include "support/vantor.h"

namespace reelvane {

JobDetails detailsNow(const UiContext& context, const ConversionJob& job) {
    const auto& vantor = context.vantor;
    return jobDetails(vantor.ports().translations, job, context.controller.conversionSettings(),
                      writableDocuments(vantor.ports().host.folders().documents, vantor.suppDir()));
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
