#include "platform/gio_workspace.h"

#include <array>
#include <chrono>
#include <utility>

#include "platform/dbus_connection.h"

namespace reelvane {
namespace {

constexpr std::size_t kLoggedLink = 200;  // a mail's holds all of its text
/// A file manager that the call starts first takes its time.
constexpr auto kFileManagerTime = std::chrono::seconds(15);

/// False, and logged, where no program was started.
bool open(const std::string& uri, BackgroundThread::Context& context) {
    const auto shared = harmlessSharedBus(context.cancellable());  // GIO talks over it
    GLibError error;
    if (g_app_info_launch_default_for_uri(uri.c_str(), nullptr, error.out()) != FALSE) return true;
    context.log(LogWarning,
                "Could not open " + uri.substr(0, kLoggedLink) + ": " + error.message());
    return false;
}

/// Keeps every byte of the name; empty, and logged, for a path that is not absolute.
std::string uriOf(const std::filesystem::path& path, BackgroundThread::Context& context) {
    GLibError error;
    const GLibText uri(g_filename_to_uri(path.c_str(), nullptr, error.out()));
    if (uri) return uri.get();
    context.log(LogWarning, "Could not show " + path.native() + ": " + error.message());
    return {};
}

void showInFileManager(const std::filesystem::path& file, BackgroundThread::Context& context) {
    const auto uri = uriOf(file, context);
    if (uri.empty()) return;
    DBusConnection bus(Bus::Session);
    const std::array uris{uri.c_str()};
    const auto answer =
        bus.call({"org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                  "org.freedesktop.FileManager1", "ShowItems"},
                 g_variant_new("(@ass)", g_variant_new_strv(uris.data(), uris.size()), ""), "()",
                 context.cancellable(), kFileManagerTime);
    bus.close(context.cancellable());
    if (answer.values || context.isCancelled()) return;
    const auto folder = uriOf(file.parent_path(), context);
    if (!folder.empty()) static_cast<void>(open(folder, context));
}

}  // namespace

GioWorkspace::GioWorkspace(SystemLog& log) : handlers_(log), fileManager_(log) {}

void GioWorkspace::openURL(const std::string& url, std::function<void(bool)> answered) {
    handlers_.run([url, answered = std::move(answered)](auto& context) {
        const bool opened = open(url, context);
        if (answered) answered(opened);
    });
}

void GioWorkspace::reveal(const std::filesystem::path& file) {
    fileManager_.run([file](auto& context) { showInFileManager(file, context); });
}

std::string GioWorkspace::recycle(const std::filesystem::path& file) {
    // The local file system's own Trash: no daemon has to run for it.
    const GObjectHandle<GFile> trashed(g_vfs_get_file_for_path(g_vfs_get_local(), file.c_str()));
    GLibError error;
    if (g_file_trash(trashed.get(), nullptr, error.out()) != FALSE) return {};
    return error.message();
}

}  // namespace reelvane
