#include "platform/thread_pool.h"

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

}  // namespace reelvane
