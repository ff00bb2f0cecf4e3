#pragma once

#include <chrono>
#include <functional>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <memory>
#include <string>

/// Owners for what GLib and GIO hand out, so that nothing is freed by hand.
namespace reelvane {

struct GObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using GObjectHandle = std::unique_ptr<T, GObjectRelease>;

struct VariantRelease {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using VariantHandle = std::unique_ptr<GVariant, VariantRelease>;

struct GLibRelease {
    void operator()(gpointer memory) const { g_free(memory); }
};
using GLibText = std::unique_ptr<char, GLibRelease>;

struct ContextRelease {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
};
using ContextHandle = std::unique_ptr<GMainContext, ContextRelease>;

/// Receives the error of one call: `GLibError error; call(..., error.out());`
class GLibError {
public:
    GLibError() = default;
    GLibError(const GLibError&) = delete;
    GLibError& operator=(const GLibError&) = delete;
    GLibError(GLibError&&) = delete;
    GLibError& operator=(GLibError&&) = delete;
    ~GLibError() { g_clear_error(&error_); }

    [[nodiscard]] GError** out() { return &error_; }
    /// Empty when the call went well.
    [[nodiscard]] std::string message() const { return error_ != nullptr ? error_->message : ""; }
    [[nodiscard]] bool is(GQuark domain, int code) const {
        return g_error_matches(error_, domain, code) != FALSE;
    }

private:
    GError* error_ = nullptr;
};

/// The text with whatever is not UTF-8 replaced, as D-Bus demands: a file name may hold any bytes.
[[nodiscard]] inline std::string validUtf8(const std::string& text) {
    const GLibText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    return valid.get();
}

enum class Bus { Session, System };

// No bus is ever started for these.

/// Opens a connection of the caller's own, and waits for it.
[[nodiscard]] GObjectHandle<GDBusConnection> openBus(Bus bus, GCancellable* cancellable,
                                                     GError** error);

/// The session bus that GIO itself uses, and the whole process with it: as it comes, its loss would
/// end the program, which whoever holds this handle is safe from. Null: there is none.
[[nodiscard]] GObjectHandle<GDBusConnection> harmlessSharedBus(GCancellable* cancellable);

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
