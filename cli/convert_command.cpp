#include "cli/convert_command.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "app/app_delegate.h"
#include "app/destinations.h"
#include "app/opened_files.h"
#include "app/preference_table.h"
#include "app/settings_reader.h"
#include "app/unfinished_outputs.h"
#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/convert_run.h"
#include "cli/destinations_command.h"
#include "cli/input_check.h"
#include "cli/terminal_alerts.h"
#include "cli/text_reporter.h"
#include "conversion/stream_plan.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/preference_text.h"
#include "support/preferences.h"
#include "support/strings.h"
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
    const auto movies = std::ranges::count_if(inputs.files, isMovieFile, &InputFile::path);
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
    alerts.setHandler([&run](const AlertContent& content) { run.alerted(content); });
    console.setClosedHandler([&] { loop.quit(statusOfLostOutput(console.closedBy())); });
    // The program's own wish; an alert has said why.
    controller.setTerminateHandler([&loop] { loop.quit(kExitFailure); });

    controller.applicationWillFinishLaunching();
    run.start(inputs);
    const auto status = loop.run();

    run.abandon();
    console.endLive();
    alerts.setHandler([](const AlertContent&) {});
    controller.applicationWillTerminate();
    alerts.setHandler({});
    const bool outputLost = console.isClosed();
    if (outputLost) {
        console.error(outputLostText(console.closedBy()) + " What was converted before stays.");
    }
    auto summary = run.summary();
    for (const auto& left : controller.outputs().leftBehind()) {
        summary.leftSomething = true;
        reporter->alerted(vantor.appName(), leftBehindText(kUntranslated, left));
    }
    reporter->ended(summary, !outputLost && status > kExitFailure);
    console.setClosedHandler({});
    return status;
}

ConversionChoices conversionChoices(const ConversionOptions& options,
                                    const Preferences& preferences, FolderAccess& folderAccess) {
    RunChoices choices{.audioTrackIndex = options.audioTrackIndex, .unattended = true};
    std::error_code ignored;
    if (options.toFolder) {
        const auto folder = absolutePath(*options.toFolder);
        if (!std::filesystem::is_directory(folder, ignored)) {
            return {.problem = makeString(
                        "There is no folder '%@' to write to. Please make it first, or name "
                        "another one.",
                        Fennimar::validUtf8(*options.toFolder))};
        }
        choices.destinationFolder = folder;
    }
    if (options.toSaved) {
        auto saved = folderSavedAs(preferences, folderAccess, *options.toSaved);
        if (!saved.folder) return {.problem = std::move(saved.problem)};
        choices.destinationFolder = *saved.folder;
    }
    if (options.subtitleFile) {
        const auto file = absolutePath(*options.subtitleFile);
        if (!std::filesystem::is_regular_file(file, ignored)) {
            return {.problem = makeString(
                        "There is no subtitle file '%@'. Please check the name and the folder.",
                        Fennimar::validUtf8(*options.subtitleFile))};
        }
        const bool findsEncoding = findsSubtitleEncoding(readConversionSettings(preferences));
        auto problem =
            subtitleProblem({.given = *options.subtitleFile, .path = file}, findsEncoding);
        if (!problem.empty()) return {.problem = std::move(problem)};
        choices.subtitleFile = file;
    }
    return {.choices = std::move(choices)};
}

void setUnattendedPreferences(Preferences& preferences) {
    preferences.setForThisRun(kAutoAdd.key, preferenceText(1));
    // The program ends when all is done, not when the queue happens to be empty.
    preferences.setForThisRun(kQuitAfterConversion.key, preferenceText(0));
    if (!preferences.isSetForThisRun(kDefaultDestination.key)) {
        preferences.setForThisRun(kDefaultDestination.key,
                                  preferenceText(static_cast<int>(kNextToSourceDestination)));
    }
}

}  // namespace reelvane
