#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "support/preferences.h"

namespace reelvane {

class AlertQueue;
class Alerts;
class BundleWatch;
class Dispatcher;
class FolderAccess;
class Host;
class MainBundle;
class Notifications;
class Panels;
class PowerAssertions;
class ProcessLauncher;
class SystemLog;
class Translations;
class Workspace;

/// Everything that the core asks of a platform. `main` makes the adapters; they outlive the core.
struct Ports {
    Alerts& alerts;
    BundleWatch& bundleWatch;
    Dispatcher& dispatcher;
    FolderAccess& folderAccess;
    Host& host;
    MainBundle& mainBundle;
    Notifications& notifications;
    Panels& panels;
    PowerAssertions& powerAssertions;
    ProcessLauncher& processLauncher;
    SystemLog& systemLog;
    Translations& translations;
    Workspace& workspace;
};

// What `Vantor` answers, for a program that has none yet.

/// The name under which the program speaks to the user.
[[nodiscard]] std::string appName(const MainBundle& mainBundle);
/// The name by which the desktop knows it.
[[nodiscard]] std::string appBundleIdentifier(const MainBundle& mainBundle);
/// The file that holds the stored preferences.
[[nodiscard]] std::filesystem::path prefsPath(const Host& host, const MainBundle& mainBundle);
/// What `docDir` would answer now; nothing is made. A folder that is not there counts as the one in
/// which it would be made.
[[nodiscard]] std::filesystem::path docDirAsItStands(const Host& host,
                                                     const MainBundle& mainBundle);

/// The program's identity, its folders, its preferences and its ports. One per process, made by
/// `main` and handed down by reference. Reading it is safe from any thread.
class Vantor {
public:
    /// Makes the support folder when it is missing and turns the log on.
    Vantor(const Ports& ports, Preferences& preferences);
    ~Vantor();
    Vantor(const Vantor&) = delete;
    Vantor& operator=(const Vantor&) = delete;
    Vantor(Vantor&&) = delete;
    Vantor& operator=(Vantor&&) = delete;

    [[nodiscard]] const Ports& ports() const { return ports_; }
    [[nodiscard]] Preferences& preferences() const { return preferences_; }

    /// What shows alerts, one at a time. Main thread only.
    [[nodiscard]] AlertQueue& alertQueue() const { return *alertQueue_; }

    [[nodiscard]] const std::string& appName() const { return appName_; }
    [[nodiscard]] const std::string& appVersionString() const { return appVersionString_; }
    [[nodiscard]] int appBuildNumber() const { return appBuildNumber_; }
    [[nodiscard]] const std::string& appBundleIdentifier() const { return appBundleIdentifier_; }

    [[nodiscard]] std::filesystem::path prefsPath() const;
    [[nodiscard]] std::filesystem::path resDir() const;
    /// The user's documents folder, made when missing; the support folder where it cannot be
    /// written.
    [[nodiscard]] std::filesystem::path docDir() const;
    [[nodiscard]] std::filesystem::path deskDir() const;
    [[nodiscard]] std::filesystem::path suppDir() const;
    [[nodiscard]] std::filesystem::path homeURLInsideSandbox() const;
    [[nodiscard]] std::filesystem::path homeURLOutsideSandbox() const;

private:
    Ports ports_;
    Preferences& preferences_;
    std::string appName_;
    std::string appVersionString_;
    int appBuildNumber_ = 0;
    std::string appBundleIdentifier_;
    std::unique_ptr<AlertQueue> alertQueue_;
};

}  // namespace reelvane
