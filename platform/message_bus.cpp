#include "platform/message_bus.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/process_start.h"

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

}  // namespace reelvane
