#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/gio_handles.h"
#include "support/ports/system_log.h"

namespace reelvane {

/// A thread for calls that may wait: D-Bus services, file managers, the Trash. The first task
/// starts it; tasks run in order. GLib sources made by a task run on this thread too.
/// Owned by one adapter; `run` and `finish` belong to the main thread.
class BackgroundThread {
public:
    class Context;
    using Task = std::function<void(Context&)>;

    /// `patience` bounds what `finish` takes.
    explicit BackgroundThread(SystemLog& log,
                              std::chrono::milliseconds patience = std::chrono::seconds(1));
    BackgroundThread(const BackgroundThread&) = delete;
    BackgroundThread& operator=(const BackgroundThread&) = delete;
    BackgroundThread(BackgroundThread&&) = delete;
    BackgroundThread& operator=(BackgroundThread&&) = delete;
    ~BackgroundThread();

    void run(Task task);
    /// Ends the thread: waits for what was submitted and then for `last`. Near the end of the
    /// patience the tasks before `last` are cancelled, then `last` as well. A thread that hangs
    /// even then is left behind: so a task holds by value, or shared, all that it uses. Without any
    /// task so far nothing runs, `last` neither.
    void finish(Task last = {});

private:
    std::chrono::milliseconds patience_;
    std::shared_ptr<Context> context_;  // shared with the thread, which may be left behind
    std::thread thread_;
};

/// What a task may use of its thread.
class BackgroundThread::Context {
public:
    explicit Context(SystemLog& log);
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    Context(Context&&) = delete;
    Context& operator=(Context&&) = delete;
    ~Context();

    /// Cancelled when the task has to come to an end.
    [[nodiscard]] GCancellable* cancellable() const;
    [[nodiscard]] bool isCancelled() const;
    /// Writes to the system log as long as there is one.
    void log(int priority, const std::string& message);

private:
    friend class BackgroundThread;
    struct Shared;
    void loop();
    std::unique_ptr<Shared> shared_;
};

}  // namespace reelvane
