#include "ui/add_shown_file.h"

#include <QCoreApplication>

#include "app/app_delegate.h"
#include "app/bookmark_problem.h"
#include "support/alerts.h"
#include "support/logging.h"
#include "ui/qt_text.h"

namespace reelvane {

void addShownFile(const UiContext& context) {
    try {
        context.controller.intake().addToQueue();
    } catch (const BookmarkProblem& problem) {
        vn_log_level(3, "%@: %@", problem.name(), problem.what());
        const auto message = QCoreApplication::translate(
            "FileSheet",
            "The saved folder cannot be opened. Is its disk connected? Please try again then, or "
            "choose another place.");
        alert_apptitled(context.vantor, message.toStdString(), "OK");
    }
}

}  // namespace reelvane
