#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "support/ports/dispatcher.h"

namespace reelvane {

/// Real threads, for what a virtual clock cannot show: one per piece of background work, and the
/// thread that made it as the main one. Delays count as over at once; there are no timers.
class ThreadedDispatcher final : public Dispatcher {
public:
    void asyncMain(Work work) override {
        const std::lock_guard lock(mutex_);
        main_.push_back(std::move(work));
        changed_.notify_all();
    }
    void afterMain(Interval /*delay*/, Work work) override { asyncMain(std::move(work)); }
    void asyncBackground(Work work) override {
        const std::lock_guard lock(mutex_);
        threads_.emplace_back(std::move(work));
    }
    void afterBackground(Interval /*delay*/, Work work) override {
        asyncBackground(std::move(work));
    }
    [[nodiscard]] bool isMainThread() const override {
        return std::this_thread::get_id() == mainThread_;
    }
    [[nodiscard]] std::unique_ptr<Timer> every(Interval /*interval*/, Work /*tick*/) override {
        return nullptr;
    }
    [[nodiscard]] TimePoint now() const override { return std::chrono::steady_clock::now(); }

    /// Runs main work until `stopMain` was called. Main thread.
    void runMain() {
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return stopped_ || !main_.empty(); });
            if (main_.empty()) break;
            const auto work = std::move(main_.front());
            main_.pop_front();
            lock.unlock();
            work();
            lock.lock();
        }
        stopped_ = false;
    }
    /// Ends `runMain` once its work is done. Any thread.
    void stopMain() {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        changed_.notify_all();
    }

private:
    std::thread::id mainThread_ = std::this_thread::get_id();
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Work> main_;
    bool stopped_ = false;
    std::vector<std::jthread> threads_;  // last: joined while all that their work uses still stands
};

}  // namespace reelvane
