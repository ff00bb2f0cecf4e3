#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <glib.h>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/thread_pool.h"
#include "support/ports/dispatcher.h"

namespace reelvane {

struct GlibSourceDestroyer {
    void operator()(GSource* source) const {
        g_source_destroy(source);
        g_source_unref(source);
    }
};

/// A source of the default main context. It stops with the pointer, which may be dropped inside the
/// source's own call: what the call runs on lives until it returns.
using GlibSource = std::unique_ptr<GSource, GlibSourceDestroyer>;

enum class NestedLoop { Waits, MayRun };

/// Calls `work` on the main context at the source's ready time, which is not set at first; `work`
/// moves it on. With `MayRun` a loop that the work runs may call the work again.
[[nodiscard]] GlibSource makeTimedSource(std::function<void()> work, NestedLoop nested);

/// Calls `work` on the main context whenever the descriptor can be read or is at its end.
[[nodiscard]] GlibSource makeReadableSource(int descriptor, std::function<void()> work);

struct ContextRelease {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
};
using ContextHandle = std::unique_ptr<GMainContext, ContextRelease>;

/// Serves another context along with the default one. That one outlives the source.
[[nodiscard]] GlibSource makeContextSource(GMainContext* context);

/// The time in the microseconds that `g_source_set_ready_time` takes, never too early.
[[nodiscard]] gint64 readyTime(std::chrono::steady_clock::time_point time);

/// The main loop on GLib's default main context, and a thread pool for background work.
/// The thread that makes it is the main thread, which also destroys it; that waits for the
/// background work that runs and drops all that has not begun. Any loop on the default context
/// serves it: `run`, or a toolkit's own.
class GlibDispatcher final : public Dispatcher {
public:
    GlibDispatcher();
    ~GlibDispatcher() override;
    GlibDispatcher(const GlibDispatcher&) = delete;
    GlibDispatcher& operator=(const GlibDispatcher&) = delete;
    GlibDispatcher(GlibDispatcher&&) = delete;
    GlibDispatcher& operator=(GlibDispatcher&&) = delete;

    /// False: the system had no thread left, so no background work ever runs.
    [[nodiscard]] bool hasBackground() const { return background_.hasThreads(); }

    /// Runs the main loop until `quit`, also one that came before, and answers its status.
    int run();
    /// Ends `run` after the work that runs. Any thread.
    void quit(int exitStatus = 0);
    /// Waits for the background work that runs, before what it uses goes; drops what has not begun.
    void finishBackground();

    void asyncMain(Work work) override;
    void afterMain(Interval delay, Work work) override;
    void asyncBackground(Work work) override;
    void afterBackground(Interval delay, Work work) override;
    [[nodiscard]] bool isMainThread() const override;
    [[nodiscard]] std::unique_ptr<Timer> every(Interval interval, Work tick) override;
    [[nodiscard]] TimePoint now() const override;

private:
    void runNext();
    void awaitNext();

    std::thread::id mainThread_;
    std::atomic<bool> quitting_ = false;
    std::atomic<int> exitStatus_ = 0;
    std::mutex mutex_;
    WorkQueue mainQueue_;    ///< guarded by `mutex_`
    bool stopping_ = false;  ///< guarded by `mutex_`
    GlibSource source_;      ///< ready when the main queue's next work is due
    ThreadPool background_;
};

}  // namespace reelvane
