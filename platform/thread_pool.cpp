#include "platform/thread_pool.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <syslog.h>
#include <utility>

#include "platform/process_life.h"

namespace reelvane {

namespace {
// Most are idle or wait for a disk; those of a disk that hangs must not keep the others' work.
constexpr std::size_t kMostThreads = 64;
}  // namespace

ThreadPool::ThreadPool() {
    const std::lock_guard lock(mutex_);
    addThread();
}

ThreadPool::~ThreadPool() {
    stop();
}

void ThreadPool::stop() {
    WorkQueue dropped;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        std::swap(dropped, queue_);
    }
    changed_.notify_all();
    for (auto& thread : threads_) thread.join();
    threads_.clear();
}

void ThreadPool::submit(Interval delay, Work work) {
    const std::lock_guard lock(mutex_);
    if (stopping_) return;
    queue_.push(WorkQueue::dueAfter(delay), std::move(work));
    if (queue_.size() > idle_ && threads_.size() < kMostThreads) addThread();
    changed_.notify_one();
}

void ThreadPool::addThread() {
    if (auto made = startThread([this] { serve(); })) threads_.push_back(*std::move(made));
}

bool ThreadPool::hasThreads() const {
    const std::lock_guard lock(mutex_);
    return !threads_.empty();
}

void ThreadPool::serve() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        if (auto work = queue_.takeDue()) {
            // The one who waited for the next work's time may be the one who took this.
            changed_.notify_one();
            lock.unlock();
            work();
            work = nullptr;  // what it holds goes before the next turn, outside the lock
            lock.lock();
            continue;
        }
        ++idle_;
        if (const auto due = queue_.nextDue()) {
            changed_.wait_until(lock, *due);
        } else {
            changed_.wait(lock);
        }
        --idle_;
    }
}

struct BackgroundThread::Context::Shared {
    explicit Shared(SystemLog& systemLog) : log(&systemLog) {}

    const ContextHandle mainContext{g_main_context_new()};
    const GObjectHandle<GCancellable> tasksEnd{g_cancellable_new()};
    const GObjectHandle<GCancellable> lastEnd{g_cancellable_new()};

    std::mutex mutex;  // guards all below
    std::condition_variable changed;
    std::deque<Task> tasks;
    std::optional<Task> last;  // present: finish when the tasks are done
    bool inLast = false;
    bool finished = false;
    SystemLog* log;  // null once the thread is left behind
};

BackgroundThread::Context::Context(SystemLog& log) : shared_(std::make_unique<Shared>(log)) {}

BackgroundThread::Context::~Context() = default;

GCancellable* BackgroundThread::Context::cancellable() const {
    const std::scoped_lock lock(shared_->mutex);
    return shared_->inLast ? shared_->lastEnd.get() : shared_->tasksEnd.get();
}

bool BackgroundThread::Context::isCancelled() const {
    return g_cancellable_is_cancelled(cancellable()) != FALSE;
}

void BackgroundThread::Context::log(int priority, const std::string& message) {
    const std::scoped_lock lock(shared_->mutex);
    if (shared_->log != nullptr) shared_->log->write(priority, message);
}

void BackgroundThread::Context::loop() {
    auto& shared = *shared_;
    g_main_context_push_thread_default(shared.mainContext.get());
    while (!shared.inLast) {
        Task task;
        {
            const std::scoped_lock lock(shared.mutex);
            if (!shared.tasks.empty()) {
                task = std::move(shared.tasks.front());
                shared.tasks.pop_front();
            } else if (shared.last) {
                task = std::move(*shared.last);
                shared.inLast = true;
            }
        }
        if (task) {
            task(*this);
        } else if (!shared.inLast) {
            g_main_context_iteration(shared.mainContext.get(), TRUE);
        }
    }
    g_main_context_pop_thread_default(shared.mainContext.get());
    const std::scoped_lock lock(shared.mutex);
    shared.finished = true;
    shared.changed.notify_all();
}

BackgroundThread::BackgroundThread(SystemLog& log, std::chrono::milliseconds patience)
    : patience_(patience),
      context_(std::make_shared<Context>(log)) {}

BackgroundThread::~BackgroundThread() {
    finish();
}

void BackgroundThread::run(Task task) {
    auto& shared = *context_->shared_;
    {
        const std::scoped_lock lock(shared.mutex);
        if (shared.last) return;
        shared.tasks.push_back(std::move(task));
    }
    g_main_context_wakeup(shared.mainContext.get());
    if (thread_.joinable()) return;
    // Without a thread the tasks wait for the next one, which may find the system with one again.
    if (auto started = startThread([context = context_] { context->loop(); })) {
        thread_ = *std::move(started);
    } else {
        context_->log(LOG_WARNING, "no thread is left for the desktop's services");
    }
}

void BackgroundThread::finish(Task last) {
    if (!thread_.joinable()) return;
    auto& shared = *context_->shared_;
    std::unique_lock lock(shared.mutex);
    shared.last = std::move(last);
    g_main_context_wakeup(shared.mainContext.get());
    const auto ends = [&](auto part) {
        return shared.changed.wait_for(lock, part, [&shared] { return shared.finished; });
    };
    bool ended = ends(patience_ * 2 / 5);
    for (auto* const end : {shared.tasksEnd.get(), shared.lastEnd.get()}) {
        if (ended) break;
        lock.unlock();
        g_cancellable_cancel(end);
        lock.lock();
        ended = ends(patience_ * 3 / 10);
    }
    if (!ended) shared.log = nullptr;
    lock.unlock();
    if (ended) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

}  // namespace reelvane
