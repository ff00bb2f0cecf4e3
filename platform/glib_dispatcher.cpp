#include "platform/glib_dispatcher.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

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

namespace {

/// What another context takes part with in the default one's poll.
struct ContextPoll {
    GMainContext* context = nullptr;
    int priority = 0;               ///< of what is ready in it
    std::vector<GPollFD> polled{};  ///< GLib holds pointers to these
};
struct ContextSource {
    GSource source;
    ContextPoll* poll;
};

ContextPoll& pollOf(GSource* source) {
    // GLib makes its sources that way: the first member is the base.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    return *reinterpret_cast<ContextSource*>(source)->poll;
}

bool samePolls(const std::vector<GPollFD>& some, const std::vector<GPollFD>& others) {
    return std::ranges::equal(some, others, [](const GPollFD& a, const GPollFD& b) {
        return a.fd == b.fd && a.events == b.events;
    });
}

gboolean prepareContext(GSource* source, gint* timeout) {
    auto& poll = pollOf(source);
    g_main_context_prepare(poll.context, &poll.priority);
    auto wanted = poll.polled;
    for (bool fits = false; !fits;) {
        const auto room = static_cast<int>(wanted.size());
        const auto count =
            g_main_context_query(poll.context, poll.priority, timeout, wanted.data(), room);
        fits = count <= room;
        wanted.resize(static_cast<std::size_t>(count));
    }
    if (!samePolls(wanted, poll.polled)) {
        for (auto& each : poll.polled) g_source_remove_poll(source, &each);
        poll.polled = std::move(wanted);
        for (auto& each : poll.polled) g_source_add_poll(source, &each);
    }
    // Not even what is ready is so before the other context's check, which GLib else leaves out.
    // The time until then is none.
    return FALSE;
}

gboolean checkContext(GSource* source) {
    auto& poll = pollOf(source);
    return g_main_context_check(poll.context, poll.priority, poll.polled.data(),
                                static_cast<int>(poll.polled.size()));
}

gboolean dispatchContext(GSource* source, GSourceFunc /*call*/, gpointer /*work*/) {
    g_main_context_dispatch(pollOf(source).context);
    return G_SOURCE_CONTINUE;
}

void finalizeContext(GSource* source) {
    const std::unique_ptr<ContextPoll> owner(&pollOf(source));
}

GSourceFuncs contextFunctions = {prepareContext,  checkContext, dispatchContext,
                                 finalizeContext, nullptr,      nullptr};

}  // namespace

GlibSource makeContextSource(GMainContext* context) {
    GlibSource source(g_source_new(&contextFunctions, sizeof(ContextSource)));
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    reinterpret_cast<ContextSource*>(source.get())->poll =
        std::make_unique<ContextPoll>(ContextPoll{.context = context}).release();
    g_source_set_can_recurse(source.get(), TRUE);
    g_source_attach(source.get(), nullptr);
    return source;
}

gint64 readyTime(std::chrono::steady_clock::time_point time) {
    // GLib's clock and steady_clock are both CLOCK_MONOTONIC.
    return std::chrono::ceil<std::chrono::microseconds>(time.time_since_epoch()).count();
}

namespace {

/// Ticks keep to the rhythm of the first; those that the main thread was too busy for are skipped.
class GlibTimer final : public Timer {
public:
    GlibTimer(Interval interval, Work tick)
        : interval_(std::max<Interval>(interval, std::chrono::milliseconds(1))),
          due_(WorkQueue::dueAfter(interval_)),
          source_(makeTimedSource(
              [this, work = std::move(tick)] {
                  moveOn();
                  work();  // may destroy this timer
              },
              NestedLoop::Waits)) {
        arm();
    }

private:
    void moveOn() {
        const auto missed = (TimePoint::clock::now() - due_) / interval_;
        due_ += interval_ * (missed + 1);
        arm();
    }
    void arm() { g_source_set_ready_time(source_.get(), readyTime(due_)); }

    Interval interval_;
    TimePoint due_;
    GlibSource source_;
};

}  // namespace

GlibDispatcher::GlibDispatcher()
    : mainThread_(std::this_thread::get_id()),
      source_(makeTimedSource([this] { runNext(); }, NestedLoop::MayRun)) {}

GlibDispatcher::~GlibDispatcher() {
    finishBackground();  // its work may still submit to the main queue
    WorkQueue dropped;
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    std::swap(dropped, mainQueue_);
}

int GlibDispatcher::run() {
    while (!quitting_) g_main_context_iteration(nullptr, TRUE);
    quitting_ = false;
    return exitStatus_;
}

void GlibDispatcher::quit(int exitStatus) {
    exitStatus_ = exitStatus;
    quitting_ = true;
    g_main_context_wakeup(nullptr);
}

void GlibDispatcher::finishBackground() {
    background_.stop();
}

void GlibDispatcher::asyncMain(Work work) {
    afterMain(Interval::zero(), std::move(work));
}

void GlibDispatcher::afterMain(Interval delay, Work work) {
    const std::lock_guard lock(mutex_);
    if (stopping_) return;
    // Read under the lock, the clock never goes back: what comes later is never due earlier.
    mainQueue_.push(WorkQueue::dueAfter(delay), std::move(work));
    awaitNext();
}

void GlibDispatcher::awaitNext() {
    const auto due = mainQueue_.nextDue();
    g_source_set_ready_time(source_.get(), due ? readyTime(*due) : -1);
}

void GlibDispatcher::runNext() {
    Work work;
    {
        const std::lock_guard lock(mutex_);
        work = mainQueue_.takeDue();
        // Before the work runs: a loop that it runs inside serves what waits behind it.
        awaitNext();
    }
    if (work) work();
}

void GlibDispatcher::asyncBackground(Work work) {
    background_.submit(Interval::zero(), std::move(work));
}

void GlibDispatcher::afterBackground(Interval delay, Work work) {
    background_.submit(delay, std::move(work));
}

bool GlibDispatcher::isMainThread() const {
    return std::this_thread::get_id() == mainThread_;
}

std::unique_ptr<Timer> GlibDispatcher::every(Interval interval, Work tick) {
    return std::make_unique<GlibTimer>(interval, std::move(tick));
}

TimePoint GlibDispatcher::now() const {
    return TimePoint::clock::now();
}

}  // namespace reelvane
