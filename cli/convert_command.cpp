#include "cli/convert_command.h"

#include <algorithm>
#include <cerrno>
#include <csignal>

#include "app/app_delegate.h"
#include "app/opened_files.h"
#include "app/settings_reader.h"
#include "app/unfinished_outputs.h"
#include "cli/console.h"
#include "cli/conversion_choices.h"
#include "cli/convert_run.h"
#include "cli/exit_status.h"
#include "cli/input_check.h"
#include "cli/stderr_alerts.h"
#include "cli/text_lines.h"
#include "conversion/subtitle_arguments.h"
#include "support/make_string.h"
#include "support/signal_status.h"
#include "support/strings.h"
#include "support/untranslated.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

/// A reader that has gone ends the program as the signal for it would.
int statusOfLostOutput(int error) {
    return error == EPIPE ? exitStatusOfSignal(SIGPIPE) : kExitFailure;
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
    const auto inputs =
        checkInputs(request.files, vantor.appName(),
                    findsSubtitleEncoding(readConversionSettings(vantor.preferences())));
    const auto movies = std::ranges::count_if(
        inputs.files, [](const InputFile& file) { return areMovies({file.path}); });
    if (request.options.subtitleFile && movies > 1) {
        console.error(kSubtitleForOneMovie);
        return kExitUsage;
    }
    const auto reporter =
        request.json ? makeJsonReporter(console) : makeTextReporter(console, request.quiet);
    AppDelegate controller(vantor, std::move(chosen.choices));
    ConvertRun run(vantor, controller, *reporter, [&] {
        const auto& summary = run.summary();
        loop.quit(summary.failed + summary.refused == 0 ? kExitSuccess : kExitFailure);
    });
    alerts.setTold([&run](const AlertContent& content) { run.alerted(content); });
    console.setClosedHandler([&] { loop.quit(statusOfLostOutput(console.closedBy())); });
    // The program's own wish; an alert has said why.
    controller.setTerminateHandler([&loop] { loop.quit(kExitFailure); });

    controller.applicationWillFinishLaunching();
    run.start(inputs);
    const auto status = loop.run();

    run.abandon();
    console.endLive();
    alerts.setTold([](const AlertContent&) {});
    controller.applicationWillTerminate();
    alerts.setTold({});
    const bool outputLost = console.isClosed();
    if (outputLost) {
        console.error(outputLostText(console.closedBy()) + " What was converted before stays.");
    }
    auto summary = run.summary();
    for (const auto& left : controller.leftBehind()) {
        summary.leftSomething = true;
        reporter->alerted(vantor.appName(), leftBehindText(kUntranslated, left));
    }
    reporter->ended(summary, !outputLost && status > kExitFailure);
    console.setClosedHandler({});
    return status;
}

}  // namespace reelvane
