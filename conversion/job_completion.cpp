#include "conversion/job_completion.h"

#include <fcntl.h>
#include <unistd.h>

#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/posix_io.h"
#include "support/vantor.h"

namespace reelvane {

Notification endNotification(const Translations& translations, std::string_view appName,
                             const EndedRun& run) {
    const auto named = [&](const std::string& format) {
        return makeString(format, appName, run.fileName);
    };
    if (run.failed) {
        return {.title = named(translations.localized("%@ Conversion Failed")),
                .text = named(translations.localized("%@ has failed to convert the file %@."))};
    }
    return {.title = named(translations.localized("%@ Conversion Finished")),
            .text = run.warning.empty()
                        ? named(translations.localized("%@ has finished converting the file %@."))
                        : run.warning,
            .actionTitle = translations.localized("Show"),
            .path = run.output};
}

bool isOnDisk(const std::filesystem::path& file) {
    const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    return descriptor.isOpen() && ::fsync(descriptor.get()) == 0;
}

void startNextJobIfIdle(ConversionJob::Controller& controller) {
    if (!controller.isAtWork()) controller.startNextJobInQueue();
}

void followUp(Vantor& vantor, ConversionJob::Controller& controller, const EndedRun& run) {
    startNextJobIfIdle(controller);
    const auto& ports = vantor.ports();
    ports.notifications.deliver(endNotification(ports.translations, vantor.appName(), run));
    controller.conversionEnded(!run.failed);
    controller.quitIfDone();
}

}  // namespace reelvane
