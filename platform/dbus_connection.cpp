#include "platform/dbus_connection.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/process_life.h"

namespace reelvane {
namespace {

/// GLib would start a bus daemon that nobody ends where the desktop has none.
GLibText sessionBusAddress(GError** error) {
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0') return GLibText(g_strdup(address));
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    std::error_code ignored;
    if (folder != nullptr && *folder == '/') {
        const auto socket = std::filesystem::path(folder) / "bus";
        if (std::filesystem::is_socket(socket, ignored)) {
            const GLibText escaped(g_dbus_address_escape_value(socket.c_str()));
            return GLibText(g_strconcat("unix:path=", escaped.get(), nullptr));
        }
    }
    g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_NOT_FOUND, "there is no session bus");
    return nullptr;
}

GLibText addressOf(Bus bus, GCancellable* cancellable, GError** error) {
    if (bus == Bus::Session) return sessionBusAddress(error);
    return GLibText(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, cancellable, error));
}

/// GLib ends the program where it cannot have the threads that serve its connections. It takes up
/// to three; others of ours, and a converter, may be taking theirs at this moment.
bool mayConnect(GError** error) {
    constexpr std::size_t kWanted = 12;
    if (areThreadsLeft(kWanted)) return true;
    g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_FAILED, "the system has no thread left");
    return false;
}

}  // namespace

GObjectHandle<GDBusConnection> openBus(Bus bus, GCancellable* cancellable, GError** error) {
    const auto address = addressOf(bus, cancellable, error);
    if (!address || !mayConnect(error)) return nullptr;
    constexpr auto kFlags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    return GObjectHandle<GDBusConnection>(
        g_dbus_connection_new_for_address_sync(address.get(), kFlags, nullptr, cancellable, error));
}

GObjectHandle<GDBusConnection> harmlessSharedBus(GCancellable* cancellable) {
    if (!sessionBusAddress(nullptr) || !mayConnect(nullptr)) return nullptr;
    GObjectHandle<GDBusConnection> shared(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr));
    if (shared) g_dbus_connection_set_exit_on_close(shared.get(), FALSE);
    return shared;
}

DBusConnection::DBusConnection(Bus bus) : bus_(bus) {}

DBusConnection::~DBusConnection() {
    if (subscription_ != 0) g_dbus_connection_signal_unsubscribe(connection_.get(), subscription_);
}

bool DBusConnection::open(GCancellable* cancellable, GError** error) {
    if (connection_ && g_dbus_connection_is_closed(connection_.get()) == FALSE) return true;
    if (const auto lost = std::exchange(subscription_, 0); lost != 0) {
        g_dbus_connection_signal_unsubscribe(connection_.get(), lost);
    }
    connection_ = openBus(bus_, cancellable, error);
    if (!connection_) return false;
    if (signal_) {
        subscription_ = g_dbus_connection_signal_subscribe(
            connection_.get(), listenedService_, listenedInterface_, nullptr, nullptr, nullptr,
            G_DBUS_SIGNAL_FLAGS_NONE,
            [](GDBusConnection*, const char*, const char*, const char*, const char* name,
               GVariant* values,
               gpointer self) { static_cast<DBusConnection*>(self)->signal_(name, values); },
            this, nullptr);
    }
    return true;
}

DBusAnswer DBusConnection::call(const DBusMethod& method, GVariant* arguments,
                                const char* answerType, GCancellable* cancellable,
                                std::chrono::milliseconds timeout) {
    const VariantHandle owned(g_variant_ref_sink(arguments));
    GLibError error;
    if (!open(cancellable, error.out())) return {.error = error.message()};
    GUnixFDList* descriptors = nullptr;
    VariantHandle values(g_dbus_connection_call_with_unix_fd_list_sync(
        connection_.get(), method.service, method.path, method.interface, method.name, owned.get(),
        G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NONE, static_cast<int>(timeout.count()),
        nullptr, &descriptors, cancellable, error.out()));
    return {.values = std::move(values),
            .descriptors = GObjectHandle<GUnixFDList>(descriptors),
            .error = error.message()};
}

void DBusConnection::emit(const char* path, const char* interface, const char* name,
                          GVariant* values, GCancellable* cancellable) {
    const VariantHandle owned(g_variant_ref_sink(values));
    if (!open(cancellable, nullptr)) return;
    g_dbus_connection_emit_signal(connection_.get(), nullptr, path, interface, name, owned.get(),
                                  nullptr);
}

void DBusConnection::listen(const char* service, const char* interface, Signal signal) {
    listenedService_ = service;
    listenedInterface_ = interface;
    signal_ = std::move(signal);
}

void DBusConnection::close(GCancellable* cancellable) {
    if (connection_) g_dbus_connection_close_sync(connection_.get(), cancellable, nullptr);
}

}  // namespace reelvane
