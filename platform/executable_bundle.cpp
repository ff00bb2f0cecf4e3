#include "platform/executable_bundle.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "platform/ini_document.h"
#include "platform/ini_file.h"
#include "support/paths.h"
#include "support/strings.h"

namespace reelvane {

namespace fs = std::filesystem;

namespace {

std::string environmentValue(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

bool isExecutable(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0;
}

constexpr const char* kFFmpegVariable = "REELVANE_FFMPEG";

/// Where nothing of that name is found: in the first folder searched, never a file that happens to
/// lie in the current one.
fs::path foundInPath(const fs::path& name) {
    auto folders = environmentValue("PATH");
    if (folders.empty()) folders = "/usr/local/bin:/usr/bin:/bin";
    std::optional<fs::path> first;
    for (const auto folder : Fennimar::split(folders, ":")) {
        if (folder.empty()) continue;
        auto candidate = Fennimar::absolutePath(fs::path(folder) / name);
        if (isExecutable(candidate)) return candidate;
        if (!first) first = candidate;
    }
    return first.value_or("/usr/bin" / name);
}

std::optional<fs::path> ffmpegFromEnvironment() {
    const fs::path named = environmentValue(kFFmpegVariable);
    if (named.empty()) return std::nullopt;
    return named.has_parent_path() ? Fennimar::absolutePath(named) : foundInPath(named);
}

fs::path runningExecutable() {
    std::error_code ignored;
    return fs::read_symlink("/proc/self/exe", ignored);
}

}  // namespace

ExecutableBundle::ExecutableBundle() : ExecutableBundle(runningExecutable()) {}

ExecutableBundle::ExecutableBundle(fs::path executable)
    : executable_(std::move(executable)),
      otherFFmpeg_(ffmpegFromEnvironment()) {}

fs::path ExecutableBundle::bundlePath() const {
    return executable_.parent_path();
}

fs::path ExecutableBundle::executablePath() const {
    return executable_;
}

fs::path ExecutableBundle::resourcesPath() const {
    return bundlePath() / "resources";
}

fs::path ExecutableBundle::pathForResource(std::string_view name) const {
    if (name == "ffmpeg" && otherFFmpeg_) return *otherFFmpeg_;
    return resourcesPath() / name;
}

std::string ExecutableBundle::variableNaming(std::string_view name) const {
    return name == "ffmpeg" && otherFFmpeg_ ? std::string(kFFmpegVariable) : std::string();
}

std::optional<std::string> ExecutableBundle::infoValue(std::string_view key) const {
    std::call_once(infoRead_, [this] {
        const auto content = readWhole(resourcesPath() / "Info.ini");
        if (const auto document = IniDocument::parse(content.text, "Info")) {
            info_ = document->values();
        }
    });
    const auto found = info_.find(key);
    if (found == info_.end() || found->second.empty()) return std::nullopt;
    return found->second;
}

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
