// The window's composition root: the only place in it that knows the platform.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <optional>

#include <QApplication>
#include <QClipboard>
#include <QLibraryInfo>
#include <QSessionManager>
#include <QTranslator>

#include "app/app_delegate.h"
#include "app/preference_table.h"
#include "app/queue_progress.h"
#include "app/unfinished_outputs.h"
#include "platform/dbus_application.h"
#include "platform/dbus_connection.h"
#include "platform/dbus_launcher_entry.h"
#include "platform/dbus_notifications.h"
#include "platform/dbus_power_assertions.h"
#include "platform/executable_bundle.h"
#include "platform/gettext_translations.h"
#include "platform/gio_workspace.h"
#include "platform/glib_dispatcher.h"
#include "platform/ini_preferences_store.h"
#include "platform/linux_host.h"
#include "platform/portal_appearance.h"
#include "platform/posix_folder_access.h"
#include "platform/posix_process_launcher.h"
#include "platform/process_life.h"
#include "platform/syslog_system_log.h"
#include "support/alerts.h"
#include "support/make_string.h"
#include "support/strings.h"
#include "support/uncaught_exceptions.h"
#include "support/vantor.h"
#include "ui/jobs/poster_view.h"
#include "ui/launch_arguments.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"
#include "ui/windows/alert_box.h"
#include "ui/windows/auxiliary_windows.h"
#include "ui/windows/main_window.h"
#include "ui/windows/qt_panels.h"

namespace reelvane {
namespace {

constexpr int kExitUsage = 2;
constexpr std::chrono::seconds kLongestEnd(5);
constexpr std::size_t kThreadsOfAWindow = 16;

/// A window program knows the keyboard and the clipboard.
class WindowWorkspace final : public GioWorkspace {
public:
    using GioWorkspace::GioWorkspace;
    [[nodiscard]] bool isShiftKeyHeld() const override {
        return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ShiftModifier);
    }
    void copyText(const std::string& text) override {
        QGuiApplication::clipboard()->setText(toQString(text));
    }
};

/// Everything that needs no screen, made in this order.
struct PlatformParts {
    ExecutableBundle mainBundle;
    LinuxHost host;
    std::string name = appName(mainBundle);
    std::string identifier = appBundleIdentifier(mainBundle);
    PosixFolderAccess folderAccess;
    Interruption interruption;
    // Interrupted, a child that somebody waits for does not keep the program.
    PosixProcessLauncher processLauncher{interruption.descriptor()};
    IniPreferencesStore store{prefsPath(host, mainBundle),
                              {.cancelDescriptor = interruption.descriptor()}};
    Preferences preferences{store};
    SyslogSystemLog systemLog{"reelvane"};
    GlibDispatcher dispatcher;
    InotifyBundleWatch bundleWatch;
    DBusConnections buses;
    DBusNotifications notifications{systemLog, dispatcher, buses, name, identifier};
    DBusPowerAssertions powerAssertions{systemLog, buses, name};
    GettextTranslations translations{mainBundle.resourcesPath() / "po"};
    PortalAppearance appearance{buses};
    DBusLauncherEntry launcherEntry{buses, identifier};
    // Absent once the program opens no more files.
    std::optional<DBusApplication> instance{std::in_place, systemLog, identifier};
};

/// How the main loop ends. An alert of the launch may turn a loop of its own before that one
/// begins.
struct LoopEnd {
    QtAlerts& alerts;
    std::optional<int> status{};

    void request(int wanted) {
        status = wanted;
        alerts.endAll();
        QCoreApplication::exit(wanted);
    }
};

Ports portsOf(PlatformParts& platform, QtAlerts& alerts, QtPanels& panels,
              WindowWorkspace& workspace) {
    return {.alerts = alerts,
            .bundleWatch = platform.bundleWatch,
            .dispatcher = platform.dispatcher,
            .folderAccess = platform.folderAccess,
            .host = platform.host,
            .mainBundle = platform.mainBundle,
            .notifications = platform.notifications,
            .panels = panels,
            .powerAssertions = platform.powerAssertions,
            .processLauncher = platform.processLauncher,
            .systemLog = platform.systemLog,
            .translations = platform.translations,
            .workspace = workspace};
}

/// The session's end asks as a quit does.
void watchSession(AppDelegate& controller, QGuiApplication& application) {
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                     [&controller](QSessionManager& session) {
                         if (!session.allowsInteraction()) return;
                         if (!controller.lifecycle().applicationShouldTerminate()) session.cancel();
                     });
}

/// Does what a second start asks of this one.
void listenToOtherStarts(DBusApplication& instance, AppDelegate& controller, MainWindow& window) {
    instance.setOpen([&controller](const ApplicationInstance::OpenRequest& request) {
        // The window that comes to the front may show the token that the user's click gave.
        if (!request.activationToken.empty()) {
            qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(request.activationToken));
        }
        if (request.files.empty()) {
            static_cast<void>(controller.applicationShouldHandleReopen());
        } else {
            controller.intake().openFiles(request.files);
        }
    });
    instance.setAction([&window](const std::string& action) {
        if (action == "preferences") window.auxiliaryWindows().openPreferences();
    });
}

/// Opens what this start was given, and listens to later ones.
void openGivenFiles(PlatformParts& platform, AppDelegate& controller, MainWindow& window,
                    QApplication& application, const std::vector<std::filesystem::path>& files) {
    // A program that was told to end meanwhile takes nothing more: who asks opens it himself.
    if (Interruption::signal() != 0) return;
    listenToOtherStarts(*platform.instance, controller, window);
    watchSession(controller, application);
    if (!files.empty()) controller.intake().openFiles(files);
}

/// Starts the program from where it was moved to.
bool startAgain(PlatformParts& platform, const std::filesystem::path& bundle) {
    platform.instance.reset();  // else the new one would hand over to this one
    return relaunch(bundle / platform.mainBundle.executablePath().filename());
}

int runWindow(PlatformParts& platform, QApplication& application,
              const std::vector<std::filesystem::path>& files) {
    QtAlerts alerts;
    QtPanels panels(platform.dispatcher);
    WindowWorkspace workspace(platform.systemLog, platform.buses);
    Vantor vantor(portsOf(platform, alerts, panels, workspace), platform.preferences);
    const UncaughtExceptionHandler uncaught(vantor);
    runDamagedApplicationTest(vantor);

    const Icons icons(vantor.resDir() / "icons");
    QGuiApplication::setWindowIcon(icons.coloured("reelvane"));
    AppDelegate controller(vantor);
    LoopEnd end{.alerts = alerts};
    const auto quit = [&end] { end.request(EXIT_SUCCESS); };
    controller.setTerminateHandler(quit);
    controller.lifecycle().setRelaunch(
        [&platform](const std::filesystem::path& bundle) { return startAgain(platform, bundle); });
    ThumbnailPosters posters(vantor);
    MainWindow window({.vantor = vantor,
                       .controller = controller,
                       .icons = icons,
                       .appearance = platform.appearance},
                      posters, quit);
    alerts.setParent(&window);
    alerts.setIcons(icons);
    panels.setParent(PanelParent::MainWindow, &window);
    QueueProgress progress(controller.queue());
    const auto shownProgress =
        bind(progress.fraction(), [&platform](std::optional<double> fraction) {
            platform.launcherEntry.setProgress(fraction);
        });
    const auto interrupted = makeReadableSource(platform.interruption.descriptor(), [&end] {
        end.request(exitStatusOfSignal(Interruption::signal()));
    });
    // The screen may go first when a session ends.
    const ExitWork screenLost([&controller] { controller.applicationIsAborting(); });

    window.show();
    const auto tellStoreProblem = [&platform, &vantor] {
        if (const auto problem = platform.store.problem(platform.translations)) {
            alert_apptitled(vantor, *problem, "OK");
        }
    };
    tellStoreProblem();
    platform.store.setHeldHandler(
        [&platform, tellStoreProblem] { platform.dispatcher.asyncMain(tellStoreProblem); });
    controller.applicationWillFinishLaunching();
    openGivenFiles(platform, controller, window, application, files);
    const auto status = end.status ? *end.status : QApplication::exec();
    platform.instance.reset();
    window.hide();  // what is left to do may take a moment
    endWithin(kLongestEnd, status);
    platform.store.hurry();
    platform.launcherEntry.setProgress(std::nullopt);
    controller.applicationWillTerminate();
    for (const auto& left : controller.outputs().leftBehind()) {
        std::cerr << "reelvane: " << printable(leftBehindText(platform.translations, left)) << '\n';
    }
    platform.dispatcher.finishBackground();
    platform.store.setHeldHandler({});
    return status;
}

/// Qt would end with a core dump.
bool hasScreen() {
    const auto isSet = [](const char* name) {
        const auto* const value = std::getenv(name);
        return value != nullptr && *value != '\0';
    };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

/// Qt's own texts, where the system has them in the language of all others. They also say which way
/// that language is written.
void loadQtTexts(QTranslator& texts, const std::string& language) {
    if (language.empty()) return;
    const auto folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (texts.load("qtbase_" + toQString(language), folder)) {
        QCoreApplication::installTranslator(&texts);
    }
}

int tellNoThreads() {
    std::cerr << "reelvane: the system gives this user no more processes and threads. Please end "
                 "other programs or raise the limit, and try again.\n";
    return EXIT_FAILURE;
}

int open(QApplication& application, const std::vector<std::string>& words) {
    std::error_code ignored;  // a folder that is gone holds no files
    const auto parsed = parseLaunchArguments(words, std::filesystem::current_path(ignored));
    if (parsed.problem) {
        std::cerr << "reelvane: " << printable(*parsed.problem) << '\n';
        return kExitUsage;
    }
    PlatformParts platform;
    if (!platform.dispatcher.hasBackground()) return tellNoThreads();
    if (platform.instance->claim(parsed.files) == ApplicationInstance::Role::HandedOver) {
        return EXIT_SUCCESS;
    }
    platform.preferences.registerDefaults(registeredDefaults());
    // The program ends when the user has agreed to it, not with a window.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::setApplicationName(toQString(platform.name));
    QGuiApplication::setDesktopFileName(toQString(platform.identifier));
    QTranslator qtTexts;
    loadQtTexts(qtTexts, platform.translations.language());
    PortTranslator texts(platform.translations);
    QCoreApplication::installTranslator(&texts);
    const Theme theme(platform.appearance);
    return runWindow(platform, application, parsed.files);
}

int start(int argc, char** argv) {
    ::unsetenv("QT_NO_GLIB");  // the core's work runs on GLib's main loop
    std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    switch (parseLaunchArguments(words, {}).action) {
        case LaunchArguments::Action::PrintHelp:
            std::cout << launchHelp();
            return EXIT_SUCCESS;
        case LaunchArguments::Action::PrintVersion:
            std::cout << "Reelvane " REELVANE_VERSION "\n";
            return EXIT_SUCCESS;
        case LaunchArguments::Action::Open:
            break;
    }
    if (!hasScreen()) {
        std::cerr << "reelvane: there is no screen to open a window on. To convert movies without "
                     "one, use reelvane-cli.\n";
        return EXIT_FAILURE;
    }
    if (!mayOpenEnoughFiles()) {  // Qt would end with a core dump, too
        std::cerr << "reelvane: " << kTooFewFiles << '\n';
        return EXIT_FAILURE;
    }
    // Qt waits without end for threads of its own that it cannot have, and is deaf meanwhile.
    if (!areThreadsLeft(kThreadsOfAWindow)) return tellNoThreads();
    QApplication application(argc, argv);
    // What Qt took for itself is gone from the arguments.
    words.assign(argv + std::min(argc, 1), argv + argc);
    return open(application, words);
}

}  // namespace
}  // namespace reelvane

int main(int argc, char** argv) {
    reelvane::prepareProcess();
    return reelvane::start(argc, argv);
}
