#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <utility>

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

}  // namespace reelvane
