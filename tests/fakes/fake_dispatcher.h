#pragma once

#include <map>
#include <memory>
#include <utility>

#include "support/ports/dispatcher.h"

namespace reelvane {

/// A main loop with a virtual clock: nothing runs until `advance` or `runPending` is called, and no
/// test ever sleeps. Background work runs on the same thread, in order of its time, and counts as
/// off the main thread while it does.
class FakeDispatcher final : public Dispatcher {
public:
    void asyncMain(Work work) override { submit(Interval::zero(), true, std::move(work)); }
    void afterMain(Interval delay, Work work) override { submit(delay, true, std::move(work)); }
    void asyncBackground(Work work) override {
        if (!isSilent) submit(Interval::zero(), false, std::move(work));
    }
    void afterBackground(Interval delay, Work work) override {
        submit(delay, false, std::move(work));
    }
    [[nodiscard]] bool isMainThread() const override { return onMain_; }
    [[nodiscard]] std::unique_ptr<Timer> every(Interval interval, Work tick) override {
        auto timer = std::make_unique<FakeTimer>(std::make_shared<Work>(std::move(tick)));
        rearm(interval, timer->tick);
        return timer;
    }
    [[nodiscard]] TimePoint now() const override { return now_; }

    /// Runs all that is due now, and what that work submits for now.
    void runPending() { advance(Interval::zero()); }
    /// Runs the background work that is due now, and leaves the main thread standing.
    void runBackground() {
        for (auto next = due_.begin(); next != due_.end() && next->first <= now_;) {
            const auto entry = next++;
            if (!entry->second.onMain) run(due_.extract(entry).mapped());
        }
    }
    /// Moves the clock on and runs what falls due on the way, in order.
    void advance(Interval by) {
        const auto until = now_ + by;
        while (!due_.empty() && due_.begin()->first <= until) {
            const auto next = due_.extract(due_.begin());
            now_ = next.key();
            run(next.mapped());
        }
        now_ = until;
    }

    bool isSilent = false;  ///< what goes to the background hangs there, as on a dead disk

private:
    struct Entry {
        bool onMain = true;
        Work work{};
    };
    struct FakeTimer final : Timer {
        explicit FakeTimer(std::shared_ptr<Work> work) : tick(std::move(work)) {}
        std::shared_ptr<Work> tick;
    };

    void run(const Entry& entry) {
        onMain_ = entry.onMain;
        entry.work();
        onMain_ = true;
    }
    void submit(Interval delay, bool onMain, Work work) {
        due_.emplace(now_ + delay, Entry{.onMain = onMain, .work = std::move(work)});
    }
    void rearm(Interval interval, std::weak_ptr<Work> tick) {
        submit(interval, true, [this, interval, tick = std::move(tick)] {
            const auto kept = tick.lock();
            if (!kept) return;
            rearm(interval, tick);
            (*kept)();
        });
    }

    std::multimap<TimePoint, Entry> due_;
    TimePoint now_{};
    bool onMain_ = true;
};

}  // namespace reelvane
