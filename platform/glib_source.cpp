#include "platform/glib_source.h"

#include <utility>

namespace reelvane {

namespace {

using SourceWork = std::function<void()>;

// An exception must not unwind GLib's frames, which would leave its locks held: it ends here.
gboolean callWork(gpointer work) noexcept {
    (*static_cast<const SourceWork*>(work))();
    return G_SOURCE_CONTINUE;
}

void deleteWork(gpointer work) noexcept {
    const std::unique_ptr<SourceWork> owner(static_cast<SourceWork*>(work));
}

gboolean dispatchSource(GSource* /*source*/, GSourceFunc call, gpointer work) {
    return call(work);
}

// Without functions of its own for it, GLib finds a source ready by its time and its descriptors.
GSourceFuncs sourceFunctions = {nullptr, nullptr, dispatchSource, nullptr, nullptr, nullptr};

GlibSource makeSource(SourceWork work) {
    GlibSource source(g_source_new(&sourceFunctions, sizeof(GSource)));
    auto owned = std::make_unique<SourceWork>(std::move(work));
    g_source_set_callback(source.get(), callWork, owned.release(), deleteWork);
    return source;
}

}  // namespace

GlibSource makeTimedSource(std::function<void()> work, NestedLoop nested) {
    auto source = makeSource(std::move(work));
    g_source_set_can_recurse(source.get(), nested == NestedLoop::MayRun ? TRUE : FALSE);
    g_source_attach(source.get(), nullptr);
    return source;
}

GlibSource makeReadableSource(int descriptor, std::function<void()> work) {
    auto source = makeSource(std::move(work));
    constexpr auto kConditions =
        static_cast<GIOCondition>(int{G_IO_IN} | int{G_IO_HUP} | int{G_IO_ERR});
    g_source_add_unix_fd(source.get(), descriptor, kConditions);
    g_source_attach(source.get(), nullptr);
    return source;
}

gint64 readyTime(std::chrono::steady_clock::time_point time) {
    // GLib's clock and steady_clock are both CLOCK_MONOTONIC.
    return std::chrono::ceil<std::chrono::microseconds>(time.time_since_epoch()).count();
}

}  // namespace reelvane
