#pragma once

#include <chrono>
#include <functional>
#include <glib.h>
#include <memory>

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

/// The time in the microseconds that `g_source_set_ready_time` takes, never too early.
[[nodiscard]] gint64 readyTime(std::chrono::steady_clock::time_point time);

}  // namespace reelvane
