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

Vantor::Vantor(const Ports& ports, Preferences& preferences)
    : ports_(ports),
      preferences_(preferences),
      appName_(ports.mainBundle.infoValue("Name").value_or("Reelvane")),
      appVersionString_(ports.mainBundle.infoValue("ShortVersion").value_or("")),
      appBuildNumber_(Fennimar::leadingInteger(ports.mainBundle.infoValue("Version").value_or(""))),
      appBundleIdentifier_(ports.mainBundle.infoValue("Identifier").value_or("")),
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

fs::path writableDocuments(const fs::path& documents, const fs::path& otherwise) {
    auto existing = documents;
    std::error_code ignored;
    while (!fs::exists(existing, ignored) && existing.has_relative_path()) {
        existing = existing.parent_path();
    }
    const bool usable =
        fs::is_directory(existing, ignored) && ::access(existing.c_str(), W_OK) == 0;
    return usable ? documents : otherwise;
}

Vantor::~Vantor() {
    log_set_sinks({});
    preferences_.setBackground({});
    preferences_.writeChanges();
}

fs::path Vantor::prefsPath() const {
    return ports_.host.folders().configuration / appBundleIdentifier_ /
           (appBundleIdentifier_ + ".ini");
}

fs::path Vantor::resDir() const {
    return ports_.mainBundle.resourcesPath();
}

fs::path Vantor::docDir() const {
    auto folder = ports_.host.folders().documents;
    // Where it cannot be made it cannot be written either.
    return makePrivateFolder(folder) ? writableDocuments(folder, suppDir()) : suppDir();
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
