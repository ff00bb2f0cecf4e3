#include "cli/stderr_alerts.h"

#include <algorithm>

#include "cli/console.h"
#include "cli/text_lines.h"
#include "cli/text_width.h"

namespace reelvane {

AlertAnswer StderrAlerts::runModal(const AlertContent& content) {
    if (told_) {
        told_(content);
    } else {
        console_.error(errorText(printable(content.title), {}, content.message));
    }
    const auto buttons = std::max<std::size_t>(content.buttons.size(), 1);
    return {.button = kFirstButton + static_cast<ButtonResult>(buttons - 1)};
}

}  // namespace reelvane
