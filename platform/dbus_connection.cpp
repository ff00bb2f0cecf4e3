#include "platform/dbus_connection.h"

#include <utility>

namespace reelvane {

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
