#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace reelvane {

using Work = std::function<void()>;
using Interval = std::chrono::nanoseconds;
using TimePoint = std::chrono::steady_clock::time_point;

/// A repeating timer. It stops when it is destroyed; its work never runs after that.
class Timer {
public:
    virtual ~Timer() = default;
};

/// The main loop, the background queue and the clock.
/// `every` and what it returns belong to the main thread; the rest may be called from any thread.
/// Work never runs inside the call that submits it.
class Dispatcher {
public:
    virtual ~Dispatcher() = default;

    /// Runs the work on the main thread in a later turn of its loop, in order of submission.
    virtual void asyncMain(Work work) = 0;
    /// The same, not before the delay is over.
    virtual void afterMain(Interval delay, Work work) = 0;
    /// Runs the work on a background thread; several may run at once.
    virtual void asyncBackground(Work work) = 0;
    /// The same, not before the delay is over.
    virtual void afterBackground(Interval delay, Work work) = 0;

    [[nodiscard]] virtual bool isMainThread() const = 0;
    [[nodiscard]] virtual std::unique_ptr<Timer> every(Interval interval, Work tick) = 0;
    /// A clock that never goes back.
    [[nodiscard]] virtual TimePoint now() const = 0;
};

}  // namespace reelvane
