#pragma once

#include <array>
#include <chrono>
#include <deque>
#include <functional>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <memory>
#include <string>
#include <vector>

/// The message buses, and owners for what GLib and GIO hand out, so that nothing is freed by hand.
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

// No bus is ever started for any of these.

/// Opens a connection of the caller's own, and waits so long for it.
[[nodiscard]] GObjectHandle<GDBusConnection> openBus(Bus bus, std::chrono::milliseconds patience,
                                                     GError** error);

/// The session bus that GIO itself uses, and the whole process with it: as it comes, its loss would
/// end the program, which whoever holds this handle is safe from. Waits. Null: there is none.
[[nodiscard]] GObjectHandle<GDBusConnection> harmlessSharedBus(GCancellable* cancellable);

struct DBusMethod {
    const char* service;
    const char* path;
    const char* interface;
    const char* name;
    Bus bus = Bus::Session;
};

struct DBusAnswer {
    VariantHandle values{};  ///< null: the call failed, and `error` says why
    GObjectHandle<GUnixFDList> descriptors{};
    std::string error{};
};

class DBusClient;

/// One connection to each message bus, which all adapters share. It is opened by the first message
/// and again after it was lost. Outlives its clients. Main thread only; nothing waits.
///
/// What comes from a bus comes through a main context of its own. The main loop serves that with
/// all else, and a client that has to wait at the program's end serves it alone.
class DBusConnections {
public:
    DBusConnections();
    DBusConnections(const DBusConnections&) = delete;
    DBusConnections& operator=(const DBusConnections&) = delete;
    DBusConnections(DBusConnections&&) = delete;
    DBusConnections& operator=(DBusConnections&&) = delete;
    /// Within a second: what was sent has gone out then.
    ~DBusConnections();

private:
    friend class DBusClient;
    class Context;
    /// Null: the bus cannot be had, and the text says why.
    using Then = std::function<void(GDBusConnection* connection, const std::string& error)>;
    struct Waiting {
        const DBusClient* client;
        Then then;
    };
    struct Connection {
        GObjectHandle<GDBusConnection> open{};
        bool isOpening = false;
        std::deque<Waiting> waiting{};
    };

    Connection& of(Bus bus) { return connections_.at(static_cast<std::size_t>(bus)); }
    [[nodiscard]] GDBusConnection* openOne(Bus bus);
    void withConnection(Bus bus, Waiting waiting);
    void startOpening(Bus bus);
    void opened(Bus bus, GObjectHandle<GDBusConnection> connection, const std::string& error);
    /// Whoever waits for a bus that has not answered yet is told that there is none.
    void giveUpOpening();
    void close();
    void add(DBusClient& client);
    void remove(const DBusClient& client);

    std::unique_ptr<Context> context_;
    GObjectHandle<GCancellable> end_;   ///< ends what is still being opened
    GObjectHandle<GCancellable> gone_;  ///< cancelled: nothing may touch this object any more
    std::array<Connection, 2> connections_;
    std::vector<DBusClient*> clients_;
};

/// What one adapter asks of the buses. A member of the adapter, whose end drops every answer and
/// signal that is still on its way. Main thread only.
class DBusClient {
public:
    using Answered = std::function<void(DBusAnswer answer)>;
    using Signal = std::function<void(const std::string& name, GVariant* values)>;
    using SharedBus = std::function<void(GObjectHandle<GDBusConnection> connection)>;

    explicit DBusClient(DBusConnections& connections);
    DBusClient(const DBusClient&) = delete;
    DBusClient& operator=(const DBusClient&) = delete;
    DBusClient(DBusClient&&) = delete;
    DBusClient& operator=(DBusClient&&) = delete;
    ~DBusClient();

    /// Takes the (floating) arguments. The answer comes later, of the given type or an error.
    void call(const DBusMethod& method, GVariant* arguments, const char* answerType,
              const Answered& answered,
              std::chrono::milliseconds timeout = std::chrono::seconds(5));
    /// Takes the (floating) values, and sends the signal to whoever listens to the session bus.
    void emit(const std::string& path, const char* interface, const char* name, GVariant* values);
    /// Tells of all signals of the interface on the session bus, from the first call on.
    void listen(const char* service, const char* interface, Signal signal);
    /// As `harmlessSharedBus`, later. Not called where there is none.
    void getSharedBus(SharedBus then);

    /// Waits until all that was asked has been answered, and what was asked then as well, but no
    /// longer than this.
    void finish(std::chrono::milliseconds patience = std::chrono::seconds(1));

private:
    friend class DBusConnections;
    void start(GDBusConnection* connection, const DBusMethod& method, GVariant* arguments,
               const char* answerType, const Answered& answered, std::chrono::milliseconds timeout);
    void subscribe(GDBusConnection* connection);
    void unsubscribe();

    DBusConnections& connections_;
    GObjectHandle<GCancellable> end_;  ///< cancelled: nobody waits for an answer any more
    int pending_ = 0;
    const char* listenedService_ = nullptr;
    const char* listenedInterface_ = nullptr;
    Signal signal_;
    GObjectHandle<GDBusConnection> listenedOn_;
    guint subscription_ = 0;
};

}  // namespace reelvane
