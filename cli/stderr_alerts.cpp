#include "cli/stderr_alerts.h"

#include "cli/console.h"
#include "cli/text_lines.h"
#include "support/alerts.h"
#include "support/utf8.h"

namespace reelvane {

AlertAnswer StderrAlerts::runModal(const AlertContent& content) {
    if (told_) {
        told_(content);
    } else {
        console_.error(errorText(printable(content.title), {}, content.message));
    }
    return {.button = cautiousButton(content)};
}

}  // namespace reelvane
