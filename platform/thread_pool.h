#pragma once

#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/ports/dispatcher.h"

namespace reelvane {

/// Work by the time it is due; what is due at the same time stays in the order it came. No lock of
/// its own.
class WorkQueue {
public:
    /// A delay below zero is none; one beyond the clock's range is its end.
    static TimePoint dueAfter(Interval delay) {
        const auto now = TimePoint::clock::now();
        if (delay <= Interval::zero()) return now;
        return delay < TimePoint::max() - now ? now + delay : TimePoint::max();
    }

    void push(TimePoint due, Work work) { works_.emplace(due, std::move(work)); }

    /// When the next work is due; absent when there is none.
    [[nodiscard]] std::optional<TimePoint> nextDue() const {
        return works_.empty() ? std::nullopt : std::optional(works_.begin()->first);
    }

    /// The next work if its time has come, else nothing.
    [[nodiscard]] Work takeDue() {
        if (works_.empty() || works_.begin()->first > TimePoint::clock::now()) return {};
        return std::move(works_.extract(works_.begin()).mapped());
    }

    [[nodiscard]] std::size_t size() const { return works_.size(); }

private:
    std::multimap<TimePoint, Work> works_;
};

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
