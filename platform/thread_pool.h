#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/work_queue.h"

namespace reelvane {

/// Runs work on background threads, several at once. Any thread may submit.
/// The first thread is made with the pool, further ones with work that finds none idle, as long as
/// the system has any left: else the work waits for those that are there. They stay until the pool
/// goes: a child process asks to be killed when the thread that started it ends.
class ThreadPool {
public:
    ThreadPool();
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;
    ThreadPool(ThreadPool&&) = delete;
    ThreadPool& operator=(ThreadPool&&) = delete;

    /// False: the system had not one thread to give, so nothing that is submitted ever runs.
    [[nodiscard]] bool hasThreads() const;

    void submit(Interval delay, Work work);
    /// Waits for the work that runs; drops what has not begun and all that comes later.
    void stop();

private:
    void addThread();
    void serve();

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    WorkQueue queue_;                   ///< guarded by `mutex_`, as is the rest
    std::vector<std::thread> threads_;  ///< never shrinks before the end
    std::size_t idle_ = 0;
    bool stopping_ = false;
};

}  // namespace reelvane
