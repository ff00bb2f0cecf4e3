// The command line's composition root: the only place that knows the platform.

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <unistd.h>

#include "app/preference_table.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/convert_command.h"
#include "cli/help_text.h"
#include "cli/terminal_alerts.h"
#include "cli/text_reporter.h"
#include "platform/dbus_connection.h"
#include "platform/dbus_notifications.h"
#include "platform/dbus_power_assertions.h"
#include "platform/executable_bundle.h"
#include "platform/gio_workspace.h"
#include "platform/glib_dispatcher.h"
#include "platform/ini_preferences_store.h"
#include "platform/linux_host.h"
#include "platform/posix_folder_access.h"
#include "platform/posix_process_launcher.h"
#include "platform/process_life.h"
#include "platform/syslog_system_log.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/problem_reports.h"
#include "support/uncaught_exceptions.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

// Interrupted, the program does not wait for a probe or a disk that hangs.
constexpr std::chrono::seconds kLongestEnd(5);

/// What every command needs, made in this order.
struct PlatformParts {
    PlatformParts(Console& shown, int cancelDescriptor)
        : console(shown),
          processLauncher(cancelDescriptor),
          store(prefsPath(host, mainBundle), {.cancelDescriptor = cancelDescriptor}) {}

    void tellStoreProblem() const {
        if (const auto problem = store.problem(kUntranslated)) console.error(*problem);
    }

    Console& console;
    ExecutableBundle mainBundle;
    LinuxHost host;
    PosixFolderAccess folderAccess;
    PosixProcessLauncher processLauncher;
    IniPreferencesStore store;
    Preferences preferences{store};
};

int convert(PlatformParts& platform, const Interruption& interruption,
            const ConvertRequest& request) {
    setUnattendedPreferences(platform.preferences);
    const auto name = appName(platform.mainBundle);
    StderrAlerts alerts(platform.console);
    DecliningPanels panels;
    GlibDispatcher dispatcher;
    if (!dispatcher.hasBackground()) {
        platform.console.error(
            "The system gives this user no more processes and threads, so nothing can be "
            "converted. Please end other programs or raise the limit, and try again.");
        return kExitFailure;
    }
    const auto interrupted = makeReadableSource(interruption.descriptor(), [&dispatcher] {
        dispatcher.quit(exitStatusOfSignal(Interruption::signal()));
    });
    g_source_set_priority(interrupted.get(), G_PRIORITY_HIGH);
    SyslogSystemLog systemLog{std::string(kProgramName)};
    InotifyBundleWatch bundleWatch;
    DBusConnections buses;
    DBusNotifications notifications(systemLog, dispatcher, buses, name,
                                    appBundleIdentifier(platform.mainBundle));
    DBusPowerAssertions powerAssertions(systemLog, buses, name);
    Untranslated translations;  // as all that the command line says
    GioWorkspace workspace(systemLog, buses);
    Vantor vantor({.alerts = alerts,
                   .bundleWatch = bundleWatch,
                   .dispatcher = dispatcher,
                   .folderAccess = platform.folderAccess,
                   .host = platform.host,
                   .mainBundle = platform.mainBundle,
                   .notifications = notifications,
                   .panels = panels,
                   .powerAssertions = powerAssertions,
                   .processLauncher = platform.processLauncher,
                   .systemLog = systemLog,
                   .translations = translations,
                   .workspace = workspace},
                  platform.preferences);
    const UncaughtExceptionHandler uncaught(vantor);
    runDamagedApplicationTest(vantor, [](int /*a window's*/) { endProcess(kExitFailure); });
    std::atomic<bool> storeHeld = false;
    platform.store.setHeldHandler([&storeHeld] { storeHeld = true; });
    const auto runLoop = [&] {
        const auto status = dispatcher.run();
        endWithin(kLongestEnd, status);
        platform.store.hurry();
        return status;
    };
    const auto status =
        runConvert(vantor, platform.console, alerts,
                   {.quit = [&](int wanted) { dispatcher.quit(wanted); }, .run = runLoop}, request);
    dispatcher.finishBackground();
    platform.store.setHeldHandler({});
    if (storeHeld) platform.tellStoreProblem();
    return status;
}

int run(PlatformParts& platform, const Request& request) {
    const CommandContext context{.console = platform.console,
                                 .store = platform.store,
                                 .preferences = platform.preferences,
                                 .folderAccess = platform.folderAccess,
                                 .host = platform.host,
                                 .mainBundle = platform.mainBundle,
                                 .processLauncher = platform.processLauncher};
    struct Runner {
        const CommandContext& context;
        int operator()(const InspectRequest& inspect) const { return runInspect(context, inspect); }
        int operator()(const VerifyRequest& verify) const { return runVerify(context, verify); }
        int operator()(const CommandRequest& command) const { return runCommand(context, command); }
        int operator()(const ConvertRequest& /*handled before*/) const { return kExitFailure; }
        int operator()(const PreferencesRequest& preferences) const {
            return runPreferences(context, preferences);
        }
        int operator()(const DestinationsRequest& destinations) const {
            return runDestinations(context, destinations);
        }
    };
    return std::visit(Runner{.context = context}, request.action);
}

void prepare(PlatformParts& platform, const Request& request) {
    platform.preferences.registerDefaults(registeredDefaults());
    for (const auto& [key, text] : request.overrides) platform.preferences.setForThisRun(key, text);
    platform.tellStoreProblem();
}

int startConversion(const Request& request, const ConvertRequest& conversion) {
    const Interruption interruption;
    Console console(interruption.descriptor());
    PlatformParts platform(console, interruption.descriptor());
    prepare(platform, request);
    return convert(platform, interruption, conversion);
}

int start(const Request& request) {
    if (!mayOpenEnoughFiles()) {
        Console().error(kTooFewFiles);
        return kExitFailure;
    }
    // A conversion has its own handler, which reports from where the exception was thrown.
    if (const auto* const conversion = std::get_if<ConvertRequest>(&request.action)) {
        return startConversion(request, *conversion);
    }
    // A probe ends with the thread that runs it.
    exitAtOnceOnSignals();
    Console console;
    PlatformParts platform(console, -1);
    prepare(platform, request);
    platform.store.setHeldHandler([&platform] { platform.tellStoreProblem(); });
    try {
        const int status = run(platform, request);
        // A reader that has read enough is told nothing.
        if (console.isClosed() && console.closedBy() != EPIPE) {
            console.error(outputLostText(console.closedBy()));
        }
        return status;
    } catch (const std::exception& exception) {
        console.error(makeString("Something unexpected happened (%@). Please report it to %@.",
                                 exception.what(), kSupportAddress));
        return kExitFailure;
    }
}

int endEarly(const EarlyExit& early) {
    Console console;
    if (early.exitStatus != kExitSuccess) {
        console.error(
            std::string_view(early.text).substr(0, early.text.find_last_not_of('\n') + 1));
        return early.exitStatus;
    }
    console.write(early.text);
    if (!console.isClosed()) return kExitSuccess;
    if (console.closedBy() != EPIPE) console.error(outputLostText(console.closedBy()));
    return kExitFailure;
}

}  // namespace
}  // namespace reelvane

// What is thrown is meant to arrive nowhere: it ends in the fatal report.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    reelvane::prepareProcess();
    const auto parsed = reelvane::parseArguments({argv + std::min(argc, 1), argv + argc});
    if (const auto* const early = std::get_if<reelvane::EarlyExit>(&parsed)) {
        return reelvane::endEarly(*early);
    }
    return reelvane::start(std::get<reelvane::Request>(parsed));
}
