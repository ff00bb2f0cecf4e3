#include "platform/inotify_bundle_watch.h"

#include <array>
#include <fcntl.h>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace reelvane {

namespace fs = std::filesystem;

InotifyBundleWatch::InotifyBundleWatch(std::chrono::milliseconds latency) : latency_(latency) {}

void InotifyBundleWatch::start(const fs::path& bundle, Callback callback) {
    callback_ = std::move(callback);
    path_ = bundle;
    bundle_.reset(::open(bundle.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    inotify_.reset(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!bundle_.isOpen() || !inotify_.isOpen()) return;
    watchPath(currentPath());
    readable_ = makeReadableSource(inotify_.get(), [this] { eventsArrived(); });
    timer_ = makeTimedSource([this] { latencyOver(); }, NestedLoop::Waits);
}

fs::path InotifyBundleWatch::currentPath() const {
    struct stat status {};
    const bool exists = bundle_.isOpen() && ::fstat(bundle_.get(), &status) == 0;
    if (!exists || status.st_nlink == 0) return path_;
    std::error_code error;
    auto path = fs::read_symlink("/proc/self/fd/" + std::to_string(bundle_.get()), error);
    return error ? path_ : path;
}

void InotifyBundleWatch::watchPath(fs::path path) {
    path_ = std::move(path);
    for (auto folder = path_; folder.has_relative_path(); folder = folder.parent_path()) {
        ::inotify_add_watch(inotify_.get(), folder.c_str(), IN_MOVE_SELF | IN_ONLYDIR);
    }
}

void InotifyBundleWatch::eventsArrived() {
    // Every event asks the same question, which the latency's end answers: none has to be read.
    std::array<char, 4096> ignored{};
    while (::read(inotify_.get(), ignored.data(), ignored.size()) > 0) {
    }
    if (std::exchange(due_, true)) return;
    g_source_set_ready_time(timer_.get(), readyTime(std::chrono::steady_clock::now() + latency_));
}

void InotifyBundleWatch::latencyOver() {
    due_ = false;
    g_source_set_ready_time(timer_.get(), -1);
    auto path = currentPath();
    if (path == path_) return;
    watchPath(std::move(path));
    if (callback_) callback_(kRootChangedFlags);
}

}  // namespace reelvane
