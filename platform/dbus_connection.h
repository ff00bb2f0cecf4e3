#pragma once

#include <chrono>
#include <functional>
#include <gio/gunixfdlist.h>
#include <memory>
#include <string>

#include "platform/gio_handles.h"
#include "platform/message_bus.h"

namespace reelvane {

struct DBusMethod {
    const char* service;
    const char* path;
    const char* interface;
    const char* name;
};

struct DBusAnswer {
    VariantHandle values{};  ///< null: the call failed, and `error` says why
    GObjectHandle<GUnixFDList> descriptors{};
    std::string error{};
};

/// One connection to a message bus of its own, opened by the first call and again after it was
/// lost. No bus is ever started for it. All of it belongs to one background thread: calls wait.
class DBusConnection {
public:
    using Signal = std::function<void(const std::string& name, GVariant* values)>;

    explicit DBusConnection(Bus bus);
    DBusConnection(const DBusConnection&) = delete;
    DBusConnection& operator=(const DBusConnection&) = delete;
    DBusConnection(DBusConnection&&) = delete;
    DBusConnection& operator=(DBusConnection&&) = delete;
    ~DBusConnection();

    /// Takes the (floating) arguments. The answer is of the given type or an error.
    [[nodiscard]] DBusAnswer call(const DBusMethod& method, GVariant* arguments,
                                  const char* answerType, GCancellable* cancellable,
                                  std::chrono::milliseconds timeout = std::chrono::seconds(5));
    /// Takes the (floating) values, and sends the signal to whoever listens, if there is a bus.
    void emit(const char* path, const char* interface, const char* name, GVariant* values,
              GCancellable* cancellable);
    /// Tells of all signals of the interface from now on, on the thread that made the calls.
    void listen(const char* service, const char* interface, Signal signal);
    /// Ends the connection, after what was sent has gone out.
    void close(GCancellable* cancellable);

private:
    bool open(GCancellable* cancellable, GError** error);

    Bus bus_;
    const char* listenedService_ = nullptr;
    const char* listenedInterface_ = nullptr;
    Signal signal_;
    guint subscription_ = 0;
    GObjectHandle<GDBusConnection> connection_;
};

}  // namespace reelvane
