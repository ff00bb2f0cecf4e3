#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include "support/ports/alerts.h"
#include "support/ports/bundle_watch.h"
#include "support/ports/folder_access.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/ports/notifications.h"
#include "support/ports/panels.h"
#include "support/ports/power_assertions.h"
#include "support/ports/preferences_store.h"
#include "support/ports/system_log.h"
#include "support/ports/translations.h"
#include "support/ports/workspace.h"
#include "support/vantor.h"
#include "tests/fakes/fake_dispatcher.h"
#include "tests/fakes/fake_process_launcher.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {

class FakePreferencesStore : public PreferencesStore {
public:
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    bool edit(const std::function<void(PreferenceValues&)>& change) override {
        change(values);
        return true;
    }
    void synchronize() override {}

    PreferenceValues values;
};

class FakeAlerts final : public Alerts {
public:
    AlertAnswer runModal(const AlertContent& content) override {
        shown.push_back(content);
        if (whileOpen) whileOpen();
        if (answers.empty()) return {};
        auto answer = std::move(answers.front());
        answers.pop_front();
        return answer;
    }

    std::deque<AlertAnswer> answers;  ///< the script; when empty: the first button
    std::vector<AlertContent> shown;  ///< what the user would have seen, in order
    std::function<void()> whileOpen;  ///< plays what the main loop does while a box is open
};

class FakePowerAssertions final : public PowerAssertions {
public:
    PowerAssertionID create(std::string_view name) override {
        names.emplace_back(name);
        held.insert(++last_);
        return last_;
    }
    void release(PowerAssertionID assertion) override { held.erase(assertion); }

    std::vector<std::string> names;   ///< of every assertion ever taken
    std::set<PowerAssertionID> held;  ///< taken and not yet released

private:
    PowerAssertionID last_ = kNoPowerAssertion;
};

class FakeSystemLog final : public SystemLog {
public:
    void write(int priority, const std::string& message) override {
        const std::scoped_lock lock(mutex_);
        written.emplace_back(priority, message);
    }
    std::vector<std::pair<int, std::string>> written;  ///< read once nothing can write any more

private:
    std::mutex mutex_;
};

class FakeMainBundle final : public MainBundle {
public:
    [[nodiscard]] std::filesystem::path bundlePath() const override { return "/bundle"; }
    [[nodiscard]] std::filesystem::path executablePath() const override { return "/bundle/app"; }
    [[nodiscard]] std::filesystem::path resourcesPath() const override {
        return "/bundle/resources";
    }
    [[nodiscard]] std::filesystem::path pathForResource(std::string_view name) const override {
        return resourcesPath() / name;
    }
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override {
        const auto found = info.find(key);
        return found == info.end() ? std::nullopt : std::optional(found->second);
    }
    std::map<std::string, std::string, std::less<>> info{{"Name", "Reelvane"},
                                                         {"ShortVersion", "1.2"},
                                                         {"Version", "34"},
                                                         {"Identifier", "org.reelvane.Reelvane"},
                                                         {"FeedbackEmail", "help@example.org"}};
};

class FakeHost final : public Host {
public:
    explicit FakeHost(const std::filesystem::path& root)
        : userFolders{.documents = root / "Documents",
                      .desktop = root / "Desktop",
                      .applicationData = root / "data",
                      .configuration = root / "config",
                      .cache = root / "cache",
                      .home = root,
                      .accountHome = root} {}
    [[nodiscard]] std::string machineModel() const override { return "Model 1"; }
    [[nodiscard]] std::string operatingSystemVersion() const override { return "System 12"; }
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override { return {"en"}; }
    [[nodiscard]] std::string loginName() const override { return "ada"; }
    [[nodiscard]] std::vector<std::string> administrators() const override { return {}; }
    [[nodiscard]] UserFolders folders() const override { return userFolders; }
    [[nodiscard]] std::optional<std::string> processStartTime(int processID) const override {
        const auto found = processes.find(processID);
        return found == processes.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] ProcessScope processScope() const override { return scope; }

    UserFolders userFolders;
    ProcessScope scope{.machine = "this", .boot = "today", .pidNamespace = "outside"};
    std::map<int, std::string> processes{{::getpid(), "now"}};  ///< start time by number
};

class FakePanels final : public Panels {
public:
    void open(const OpenPanelRequest& /*request*/,
              std::function<void(std::vector<std::filesystem::path>)> answer) override {
        answer(std::exchange(openAnswer, {}));
    }
    void save(const SavePanelRequest& request,
              std::function<void(std::optional<std::filesystem::path>)> answer) override {
        saved.push_back(request);
        answer(std::exchange(saveAnswer, std::nullopt));
    }

    std::vector<std::filesystem::path> openAnswer;    ///< when empty: cancelled
    std::optional<std::filesystem::path> saveAnswer;  ///< when absent: cancelled
    std::vector<SavePanelRequest> saved;
};

class FakeWorkspace final : public Workspace {
public:
    void openURL(const std::string& url, std::function<void(bool)> answered) override {
        urls.push_back(url);
        if (answered) answered(opens);
    }
    void copyText(const std::string& text) override { copied.push_back(text); }
    void reveal(const std::filesystem::path& file) override { revealed.push_back(file); }
    [[nodiscard]] std::string recycle(const std::filesystem::path& file) override {
        if (trashProblem.empty()) recycled.push_back(file);
        return trashProblem;
    }
    [[nodiscard]] bool isShiftKeyHeld() const override { return false; }

    bool opens = true;  ///< there is a program for links
    std::vector<std::string> urls;
    std::vector<std::string> copied;
    std::vector<std::filesystem::path> revealed;
    std::vector<std::filesystem::path> recycled;
    std::string trashProblem;  ///< why nothing can be recycled; empty: all can
};

class FakeNotifications final : public Notifications {
public:
    void deliver(const Notification& notification) override { delivered.push_back(notification); }
    void setActivation(Activation activation) override { activated = std::move(activation); }

    std::vector<Notification> delivered;
    Activation activated;
};

class FakeFolderAccess final : public FolderAccess {
public:
    [[nodiscard]] BookmarkResult createBookmark(const std::filesystem::path& folder) override {
        if (broken.contains(folder)) return {.error = "cannot be remembered"};
        return {.bookmark = folder.native()};
    }
    [[nodiscard]] ResolvedBookmark resolveBookmark(const BookmarkData& bookmark) override {
        if (broken.contains(bookmark)) return {.error = "is gone"};
        return {.folder = bookmark};
    }
    [[nodiscard]] std::filesystem::path pathOf(const BookmarkData& bookmark) const override {
        return bookmark;
    }
    [[nodiscard]] bool startAccessing(const std::filesystem::path& folder) override {
        if (closed.contains(folder)) return false;
        open.insert(folder);
        return true;
    }
    void stopAccessing(const std::filesystem::path& folder) override {
        if (const auto found = open.find(folder); found != open.end()) open.erase(found);
    }
    [[nodiscard]] std::vector<std::filesystem::path> grantedFolders() const override {
        return granted;
    }

    std::set<std::filesystem::path> broken;     ///< neither remembered nor found again
    std::set<std::filesystem::path> closed;     ///< access cannot be started
    std::multiset<std::filesystem::path> open;  ///< access started and not yet stopped
    std::vector<std::filesystem::path> granted{"/"};
};

class FakeBundleWatch final : public BundleWatch {
public:
    void start(const std::filesystem::path& bundle, Callback callback) override {
        path = bundle;
        tell = std::move(callback);
    }
    [[nodiscard]] std::filesystem::path currentPath() const override { return path; }

    std::filesystem::path path;
    Callback tell;
};

class FakeTranslations final : public Translations {
public:
    [[nodiscard]] std::string localized(std::string_view text) const override {
        const auto found = texts.find(text);
        return found == texts.end() ? std::string(text) : found->second;
    }
    [[nodiscard]] std::string localized(std::string_view singular, std::string_view plural,
                                        std::uint64_t count) const override {
        return localized(count == 1 ? singular : plural);
    }
    std::map<std::string, std::string, std::less<>> texts;
};

/// Every fake, and a Vantor on top of them, in a temporary folder of its own.
template <typename DispatcherType>
struct PlatformWith {
    TemporaryFolder folder;
    DispatcherType dispatcher;
    FakeProcessLauncher processLauncher;
    FakePreferencesStore store;
    FakeAlerts alerts;
    FakePowerAssertions powerAssertions;
    FakeSystemLog systemLog;
    FakeMainBundle mainBundle;
    FakeHost host{folder.path()};
    FakePanels panels;
    FakeWorkspace workspace;
    FakeNotifications notifications;
    FakeFolderAccess folderAccess;
    FakeBundleWatch bundleWatch;
    FakeTranslations translations;
    Preferences preferences{store};
    Vantor vantor{{alerts, bundleWatch, dispatcher, folderAccess, host, mainBundle, notifications,
                   panels, powerAssertions, processLauncher, systemLog, translations, workspace},
                  preferences};
};
using FakePlatform = PlatformWith<FakeDispatcher>;

}  // namespace reelvane
