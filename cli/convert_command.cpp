#include "cli/convert_command.h"

#include <csignal>

#include "app/app_delegate.h"
#include "cli/console.h"
#include "cli/conversion_choices.h"
#include "cli/convert_run.h"
#include "cli/exit_status.h"
#include "cli/input_check.h"
#include "cli/stderr_alerts.h"
#include "support/signal_status.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

bool isInterruption(int exitStatus) {
    return exitStatus > kExitFailure;
}

}  // namespace

int runConvert(Vantor& vantor, Console& console, StderrAlerts& alerts, const ConvertLoop& loop,
               const ConvertRequest& request) {
    auto chosen =
        conversionChoices(request.options, vantor.preferences(), vantor.ports().folderAccess);
    if (!chosen.problem.empty()) {
        console.error(chosen.problem);
        return kExitFailure;
    }
    const auto reporter =
        request.json ? makeJsonReporter(console) : makeTextReporter(console, request.quiet);
    AppDelegate controller(vantor, std::move(chosen.choices));
    ConvertRun run(vantor, controller, *reporter, [&] {
        const auto& summary = run.summary();
        loop.quit(summary.failed + summary.refused == 0 ? kExitSuccess : kExitFailure);
    });
    alerts.setTold([&run](const AlertContent& content) { run.alerted(content); });
    console.setClosedHandler([&loop] { loop.quit(exitStatusOfSignal(SIGPIPE)); });
    controller.setTerminateHandler([&loop] { loop.quit(exitStatusOfSignal(SIGTERM)); });

    controller.applicationWillFinishLaunching();
    run.start(checkInputs(request.files, vantor.appName()));
    const auto status = loop.run();

    run.abandon();
    console.endLive();
    alerts.setTold([](const AlertContent&) {});
    controller.applicationWillTerminate();
    alerts.setTold({});
    reporter->ended(run.summary(), isInterruption(status));
    console.setClosedHandler({});
    return status;
}

}  // namespace reelvane
