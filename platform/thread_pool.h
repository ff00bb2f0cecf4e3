#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/work_queue.h"

namespace reelvane {

/// Runs work on background threads, several at once. Any thread may submit.
/// Threads come with the first work that finds none idle, and stay until the pool goes: a child
/// process asks to be killed when the thread that started it ends.
class ThreadPool {
public:
    ThreadPool() = default;
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;
    ThreadPool(ThreadPool&&) = delete;
    ThreadPool& operator=(ThreadPool&&) = delete;

    void submit(Interval delay, Work work);
    /// Waits for the work that runs; drops what has not begun and all that comes later.
    void stop();

private:
    void serve();

    std::mutex mutex_;
    std::condition_variable changed_;
    WorkQueue queue_;                   ///< guarded by `mutex_`, as is the rest
    std::vector<std::thread> threads_;  ///< never shrinks before the end
    std::size_t idle_ = 0;
    bool stopping_ = false;
};

}  // namespace reelvane
