#include "platform/gio_workspace.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/process_life.h"

namespace reelvane {

/// Starts the programs that open links, one after the other, on a thread that the first link makes.
/// Main thread only.
class GioWorkspace::Handlers {
public:
    explicit Handlers(SystemLog& log) : queue_(std::make_shared<Queue>(log)) {}
    Handlers(const Handlers&) = delete;
    Handlers& operator=(const Handlers&) = delete;
    Handlers(Handlers&&) = delete;
    Handlers& operator=(Handlers&&) = delete;
    ~Handlers();

    void open(const std::string& uri, std::function<void(bool opened)> answered);

private:
    struct Link {
        std::string uri{};
        std::function<void(bool opened)> answered{};
    };
    /// Shared with the thread, which is left behind where it hangs.
    struct Queue {
        explicit Queue(SystemLog& systemLog) : log(&systemLog) {}

        const GObjectHandle<GCancellable> cancellable{g_cancellable_new()};
        std::mutex mutex;  ///< guards all below
        std::condition_variable changed;
        std::deque<Link> links;
        bool isEnding = false;
        bool hasEnded = false;
        SystemLog* log;  ///< null once the thread is left behind
    };

    static void serve(Queue& queue);
    [[nodiscard]] static bool start(const std::string& uri, Queue& queue);

    std::shared_ptr<Queue> queue_;
    std::thread thread_;
};

GioWorkspace::Handlers::~Handlers() {
    if (!thread_.joinable()) return;
    std::unique_lock lock(queue_->mutex);
    queue_->isEnding = true;
    queue_->changed.notify_all();
    const auto hasEnded = [this] { return queue_->hasEnded; };
    if (!queue_->changed.wait_for(lock, std::chrono::milliseconds(700), hasEnded)) {
        g_cancellable_cancel(queue_->cancellable.get());
    }
    if (queue_->changed.wait_for(lock, std::chrono::milliseconds(300), hasEnded)) {
        lock.unlock();
        thread_.join();
    } else {
        queue_->log = nullptr;
        thread_.detach();
    }
}

void GioWorkspace::Handlers::open(const std::string& uri, std::function<void(bool)> answered) {
    const std::scoped_lock lock(queue_->mutex);
    queue_->links.push_back({.uri = uri, .answered = std::move(answered)});
    queue_->changed.notify_all();
    if (thread_.joinable()) return;
    // Without a thread the links wait for the next one, which may find the system with one again.
    if (auto started = startThread([queue = queue_] { serve(*queue); })) {
        thread_ = *std::move(started);
    } else {
        queue_->log->write(LogWarning, "no thread is left for the desktop's services");
    }
}

void GioWorkspace::Handlers::serve(Queue& queue) {
    std::unique_lock lock(queue.mutex);
    for (;;) {
        queue.changed.wait(lock, [&queue] { return !queue.links.empty() || queue.isEnding; });
        if (queue.links.empty()) break;
        const auto link = std::move(queue.links.front());
        queue.links.pop_front();
        lock.unlock();
        const bool opened = start(link.uri, queue);
        if (link.answered) link.answered(opened);
        lock.lock();
    }
    queue.hasEnded = true;
    queue.changed.notify_all();
}

bool GioWorkspace::Handlers::start(const std::string& uri, Queue& queue) {
    constexpr std::size_t kLoggedLink = 200;  // a mail's holds all of its text
    const auto shared = harmlessSharedBus(queue.cancellable.get());  // GIO talks over it
    GLibError error;
    if (g_app_info_launch_default_for_uri(uri.c_str(), nullptr, error.out()) != FALSE) return true;
    const std::scoped_lock lock(queue.mutex);
    if (queue.log != nullptr) {
        queue.log->write(LogWarning,
                         "Could not open " + uri.substr(0, kLoggedLink) + ": " + error.message());
    }
    return false;
}

GioWorkspace::GioWorkspace(SystemLog& log, DBusConnections& buses)
    : log_(log),
      handlers_(std::make_unique<Handlers>(log)),
      fileManager_(buses) {}

GioWorkspace::~GioWorkspace() {
    fileManager_.finish();
}

void GioWorkspace::openURL(const std::string& url, std::function<void(bool)> answered) {
    handlers_->open(url, std::move(answered));
}

/// Keeps every byte of the name; empty, and logged, for a path that is not absolute.
std::string GioWorkspace::uriOf(const std::filesystem::path& path) {
    GLibError error;
    const GLibText uri(g_filename_to_uri(path.c_str(), nullptr, error.out()));
    if (uri) return uri.get();
    log_.write(LogWarning, "Could not show " + path.native() + ": " + error.message());
    return {};
}

void GioWorkspace::reveal(const std::filesystem::path& file) {
    /// A file manager that the call starts first takes its time.
    constexpr auto kPatience = std::chrono::seconds(15);
    const auto uri = uriOf(file);
    if (uri.empty()) return;
    const std::array uris{uri.c_str()};
    fileManager_.call(
        {.service = "org.freedesktop.FileManager1",
         .path = "/org/freedesktop/FileManager1",
         .interface = "org.freedesktop.FileManager1",
         .name = "ShowItems"},
        g_variant_new("(@ass)", g_variant_new_strv(uris.data(), uris.size()), ""), "()",
        [this, folder = uriOf(file.parent_path())](const DBusAnswer& answer) {
            if (!answer.values) handlers_->open(folder, {});
        },
        kPatience);
}

std::string GioWorkspace::recycle(const std::filesystem::path& file) {
    // The local file system's own Trash: no daemon has to run for it.
    const GObjectHandle<GFile> trashed(g_vfs_get_file_for_path(g_vfs_get_local(), file.c_str()));
    GLibError error;
    if (g_file_trash(trashed.get(), nullptr, error.out()) != FALSE) return {};
    return error.message();
}

}  // namespace reelvane
