#include "support/vantor.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

#include "support/alert_queue.h"
#include "support/logging.h"
#include "support/ports/dispatcher.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/posix_io.h"
#include "support/strings.h"

namespace reelvane {
namespace fs = std::filesystem;

namespace {

bool canBeWrittenInto(fs::path folder) {
    std::error_code ignored;
    while (!fs::exists(folder, ignored) && folder.has_relative_path()) {
        folder = folder.parent_path();
    }
    return fs::is_directory(folder, ignored) && ::access(folder.c_str(), W_OK) == 0;
}

}  // namespace

std::string appName(const MainBundle& mainBundle) {
    return mainBundle.infoValue("Name").value_or("Reelvane");
}

std::string appBundleIdentifier(const MainBundle& mainBundle) {
    return mainBundle.infoValue("Identifier").value_or("org.reelvane.Reelvane");
}

fs::path prefsPath(const Host& host, const MainBundle& mainBundle) {
    const auto identifier = appBundleIdentifier(mainBundle);
    return host.folders().configuration / identifier / (identifier + ".ini");
}

fs::path docDirAsItStands(const Host& host, const MainBundle& mainBundle) {
    const auto folders = host.folders();
    return canBeWrittenInto(folders.documents) ? folders.documents
                                               : folders.applicationData / appName(mainBundle);
}

Vantor::Vantor(const Ports& ports, Preferences& preferences)
    : ports_(ports),
      preferences_(preferences),
      appName_(reelvane::appName(ports.mainBundle)),
      appVersionString_(ports.mainBundle.infoValue("ShortVersion").value_or("")),
      appBuildNumber_(Fennimar::leadingInteger(ports.mainBundle.infoValue("Version").value_or(""))),
      appBundleIdentifier_(reelvane::appBundleIdentifier(ports.mainBundle)),
      alertQueue_(std::make_unique<AlertQueue>(ports.alerts, ports.dispatcher, ports.translations,
                                               appName_)) {
    log_set_sinks(
        {.preferences = &preferences_, .systemLog = &ports_.systemLog, .appName = appName_});
    preferences_.setBackground(
        [this](std::function<void()> work) { ports_.dispatcher.asyncBackground(std::move(work)); });
    if (!makePrivateFolder(suppDir())) {
        vn_log_level(LogError, "Error: could not make the folder %@: %@", suppDir(),
                     std::generic_category().message(errno));
    }
}

Vantor::~Vantor() {
    log_set_sinks({});
    preferences_.setBackground({});
    preferences_.writeChanges();
}

fs::path Vantor::prefsPath() const {
    return reelvane::prefsPath(ports_.host, ports_.mainBundle);
}

fs::path Vantor::resDir() const {
    return ports_.mainBundle.resourcesPath();
}

fs::path Vantor::docDir() const {
    // Where it cannot be made it cannot be written either.
    return makePrivateFolder(ports_.host.folders().documents)
               ? docDirAsItStands(ports_.host, ports_.mainBundle)
               : suppDir();
}

fs::path Vantor::deskDir() const {
    return ports_.host.folders().desktop;
}

fs::path Vantor::suppDir() const {
    return ports_.host.folders().applicationData / appName_;
}

fs::path Vantor::homeURLInsideSandbox() const {
    return ports_.host.folders().home;
}

fs::path Vantor::homeURLOutsideSandbox() const {
    return ports_.host.folders().accountHome;
}

}  // namespace reelvane
