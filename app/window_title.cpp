#include "app/window_title.h"

#include "support/make_string.h"
#include "support/ports/translations.h"

namespace reelvane {

std::string windowTitle(const Translations& translations, std::string_view appName,
                        const QueueSummary& queue) {
    const auto pause = queue.paused ? translations.localized(" (Paused)") : std::string(" ");
    const auto jobs = queue.jobs == 0
                          ? std::string()
                          : makeString(translations.localized(" [%li Job(s), %li Queued]"),
                                       queue.jobs, queue.queued);
    return makeString("%@%@%@", appName, pause, jobs);
}

}  // namespace reelvane
