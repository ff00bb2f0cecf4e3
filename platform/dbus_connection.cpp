#include "platform/dbus_connection.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <system_error>
#include <utility>

#include "platform/glib_dispatcher.h"
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

/// GLib ends the program where it cannot have the threads that serve its connections. It takes up
/// to three; others of ours, and a converter, may be taking theirs at this moment.
bool mayConnect(GError** error) {
    constexpr std::size_t kWanted = 12;
    if (areThreadsLeft(kWanted)) return true;
    g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_FAILED, "the system has no thread left");
    return false;
}

/// As GLib has it, which takes a thread for telling it.
GLibText systemBusAddress() {
    const char* const address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    return GLibText(
        g_strdup(address != nullptr ? address : "unix:path=/var/run/dbus/system_bus_socket"));
}

/// Null where there is no such bus or GLib could not serve a connection to it.
GLibText usableAddress(Bus bus, GError** error) {
    auto address = bus == Bus::Session ? sessionBusAddress(error) : systemBusAddress();
    return address && mayConnect(error) ? std::move(address) : nullptr;
}

constexpr auto kConnectionFlags = static_cast<GDBusConnectionFlags>(
    G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);

GObjectHandle<GDBusConnection> harmless(GDBusConnection* shared) {
    if (shared != nullptr) g_dbus_connection_set_exit_on_close(shared, FALSE);
    return GObjectHandle<GDBusConnection>(shared);
}

/// What happens when something that GLib was asked for is there. Nothing once it is cancelled: who
/// asked may be gone.
class Completion {
public:
    using Then = std::function<void(GObject* source, GAsyncResult* result)>;

    Completion(GCancellable* cancellable, Then then)
        : cancellable_(G_CANCELLABLE(g_object_ref(cancellable))),
          then_(std::move(then)) {}

    /// For GLib, which hands it back to `arrived`, once.
    static gpointer make(GCancellable* cancellable, Then then) {
        return std::make_unique<Completion>(cancellable, std::move(then)).release();
    }
    // An exception must not unwind GLib's frames: it ends here.
    static void arrived(GObject* source, GAsyncResult* result, gpointer made) noexcept {
        const std::unique_ptr<Completion> completion(static_cast<Completion*>(made));
        if (g_cancellable_is_cancelled(completion->cancellable_.get()) == FALSE) {
            completion->then_(source, result);
        }
    }

private:
    GObjectHandle<GCancellable> cancellable_;
    Then then_;
};

}  // namespace

GObjectHandle<GDBusConnection> openBus(Bus bus, std::chrono::milliseconds patience,
                                       GError** error) {
    const auto address = usableAddress(bus, error);
    if (!address) return nullptr;
    const GObjectHandle<GCancellable> end(g_cancellable_new());
    auto opening = std::async([&] {
        return GObjectHandle<GDBusConnection>(g_dbus_connection_new_for_address_sync(
            address.get(), kConnectionFlags, nullptr, end.get(), error));
    });
    if (opening.wait_for(patience) == std::future_status::timeout) g_cancellable_cancel(end.get());
    return opening.get();
}

GObjectHandle<GDBusConnection> harmlessSharedBus(GCancellable* cancellable) {
    if (!usableAddress(Bus::Session, nullptr)) return nullptr;
    return harmless(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr));
}

/// A main context that the default one serves as a part of itself.
class DBusConnections::Context {
public:
    Context() : source_(makeContextSource(context_.get())) {
        g_main_context_acquire(context_.get());  // so that another thread's news wakes its poll
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    Context(Context&&) = delete;
    Context& operator=(Context&&) = delete;
    ~Context() {
        source_.reset();
        g_main_context_release(context_.get());
    }

    /// Runs what asks GLib for something, so that the answer comes through this context.
    template <typename Ask>
    auto within(Ask ask) {
        struct Pushed {
            explicit Pushed(GMainContext* pushed) : context(pushed) {
                g_main_context_push_thread_default(context);
            }
            Pushed(const Pushed&) = delete;
            Pushed& operator=(const Pushed&) = delete;
            Pushed(Pushed&&) = delete;
            Pushed& operator=(Pushed&&) = delete;
            ~Pushed() { g_main_context_pop_thread_default(context); }
            GMainContext* context;
        };
        const Pushed pushed(context_.get());
        return ask();
    }

    /// Runs the work in a later turn. Without GIO, which takes threads for all that comes later.
    void later(Work work) {
        const std::unique_ptr<GSource, SourceRelease> source(g_idle_source_new());
        g_source_set_callback(
            source.get(),
            [](gpointer made) noexcept -> gboolean {
                (*static_cast<Work*>(made))();
                return G_SOURCE_REMOVE;
            },
            std::make_unique<Work>(std::move(work)).release(),
            [](gpointer made) { const std::unique_ptr<Work> owner(static_cast<Work*>(made)); });
        g_source_attach(source.get(), context_.get());
    }

    /// Serves this context alone.
    void serveUntil(const std::function<bool()>& isDone, std::chrono::milliseconds patience) {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        const GlibSource alarm(g_timeout_source_new(static_cast<guint>(patience.count())));
        g_source_set_callback(
            alarm.get(), [](gpointer) -> gboolean { return G_SOURCE_REMOVE; }, nullptr, nullptr);
        g_source_attach(alarm.get(), context_.get());
        while (!isDone() && std::chrono::steady_clock::now() < deadline) {
            g_main_context_iteration(context_.get(), TRUE);
        }
    }
    /// Serves what is there, without waiting.
    void serveRest() {
        while (g_main_context_iteration(context_.get(), FALSE) != FALSE) {
        }
    }

private:
    struct SourceRelease {
        void operator()(GSource* source) const { g_source_unref(source); }
    };

    ContextHandle context_{g_main_context_new()};
    GlibSource source_;
};

DBusConnections::DBusConnections()
    : context_(std::make_unique<Context>()),
      end_(g_cancellable_new()),
      gone_(g_cancellable_new()) {}

DBusConnections::~DBusConnections() {
    close();
    g_cancellable_cancel(end_.get());
    const auto opensNone = [this] {
        return std::ranges::none_of(connections_, &Connection::isOpening);
    };
    context_->serveUntil(opensNone, std::chrono::milliseconds(200));
    g_cancellable_cancel(gone_.get());
    context_->serveRest();
}

GDBusConnection* DBusConnections::openOne(Bus bus) {
    auto* const open = of(bus).open.get();
    return open != nullptr && g_dbus_connection_is_closed(open) == FALSE ? open : nullptr;
}

void DBusConnections::withConnection(Bus bus, Waiting waiting) {
    if (auto* const open = openOne(bus)) {
        waiting.then(open, {});
        return;
    }
    of(bus).waiting.push_back(std::move(waiting));
    if (!std::exchange(of(bus).isOpening, true)) startOpening(bus);
}

void DBusConnections::startOpening(Bus bus) {
    GLibError refusal;
    const auto address = usableAddress(bus, refusal.out());
    if (!address) {
        context_->later([this, bus, error = refusal.message()] { opened(bus, nullptr, error); });
        return;
    }
    const auto finished = [this, bus](GObject* /*source*/, GAsyncResult* result) {
        GLibError error;
        GObjectHandle<GDBusConnection> connection(
            g_dbus_connection_new_for_address_finish(result, error.out()));
        opened(bus, std::move(connection), error.message());
    };
    context_->within([&] {
        g_dbus_connection_new_for_address(address.get(), kConnectionFlags, nullptr, end_.get(),
                                          &Completion::arrived,
                                          Completion::make(gone_.get(), finished));
    });
}

void DBusConnections::opened(Bus bus, GObjectHandle<GDBusConnection> connection,
                             const std::string& error) {
    auto& opening = of(bus);
    opening.isOpening = false;
    opening.open = std::move(connection);
    auto* const open = opening.open.get();
    if (bus == Bus::Session && open != nullptr) {
        for (auto* const client : clients_) client->subscribe(open);
    }
    // Whatever they ask for again, where there is no bus, waits for the next attempt.
    for (auto left = opening.waiting.size(); left > 0 && !opening.waiting.empty(); --left) {
        const auto waiting = std::move(opening.waiting.front());
        opening.waiting.pop_front();
        waiting.then(open, error);
    }
}

void DBusConnections::giveUpOpening() {
    for (const auto bus : {Bus::Session, Bus::System}) {
        if (of(bus).isOpening) opened(bus, nullptr, "the message bus does not answer");
    }
}

void DBusConnections::close() {
    constexpr std::chrono::milliseconds kPatience(500);
    for (auto& connection : connections_) {
        if (!connection.open) continue;
        bool done = false;
        const auto within = [&](auto ask) {
            done = false;
            context_->within([&] {
                ask(connection.open.get(), end_.get(), &Completion::arrived,
                    Completion::make(end_.get(),
                                     [&done](GObject*, GAsyncResult*) { done = true; }));
            });
            context_->serveUntil([&done] { return done; }, kPatience);
        };
        within(g_dbus_connection_flush);  // a close alone overtakes what was sent
        within(g_dbus_connection_close);
    }
}

void DBusConnections::add(DBusClient& client) {
    clients_.push_back(&client);
}

void DBusConnections::remove(const DBusClient& client) {
    std::erase(clients_, &client);
    for (auto& connection : connections_) {
        std::erase_if(connection.waiting,
                      [&client](const Waiting& waiting) { return waiting.client == &client; });
    }
}

DBusClient::DBusClient(DBusConnections& connections)
    : connections_(connections),
      end_(g_cancellable_new()) {
    connections_.add(*this);
}

DBusClient::~DBusClient() {
    g_cancellable_cancel(end_.get());
    unsubscribe();
    connections_.remove(*this);
}

void DBusClient::call(const DBusMethod& method, GVariant* arguments, const char* answerType,
                      const Answered& answered, std::chrono::milliseconds timeout) {
    // Shared, because what waits in a function has to be copied.
    const std::shared_ptr<GVariant> owned(g_variant_ref_sink(arguments), VariantRelease());
    ++pending_;
    connections_.withConnection(
        method.bus,
        {.client = this, .then = [=, this](GDBusConnection* connection, const std::string& error) {
             if (connection != nullptr) {
                 start(connection, method, owned.get(), answerType, answered, timeout);
                 return;
             }
             --pending_;
             answered({.error = error});
         }});
}

void DBusClient::start(GDBusConnection* connection, const DBusMethod& method, GVariant* arguments,
                       const char* answerType, const Answered& answered,
                       std::chrono::milliseconds timeout) {
    const auto finished = [this, answered](GObject* source, GAsyncResult* result) {
        GLibError error;
        GUnixFDList* descriptors = nullptr;
        VariantHandle values(g_dbus_connection_call_with_unix_fd_list_finish(
            G_DBUS_CONNECTION(source), &descriptors, result, error.out()));
        --pending_;
        answered({.values = std::move(values),
                  .descriptors = GObjectHandle<GUnixFDList>(descriptors),
                  .error = error.message()});
    };
    connections_.context_->within([&] {
        g_dbus_connection_call_with_unix_fd_list(
            connection, method.service, method.path, method.interface, method.name, arguments,
            G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NONE, static_cast<int>(timeout.count()),
            nullptr, end_.get(), &Completion::arrived, Completion::make(end_.get(), finished));
    });
}

void DBusClient::emit(const std::string& path, const char* interface, const char* name,
                      GVariant* values) {
    const std::shared_ptr<GVariant> owned(g_variant_ref_sink(values), VariantRelease());
    ++pending_;
    connections_.withConnection(
        Bus::Session, {.client = this, .then = [=, this](GDBusConnection* connection, auto&) {
                           --pending_;
                           if (connection == nullptr) return;
                           g_dbus_connection_emit_signal(connection, nullptr, path.c_str(),
                                                         interface, name, owned.get(), nullptr);
                       }});
}

void DBusClient::listen(const char* service, const char* interface, Signal signal) {
    listenedService_ = service;
    listenedInterface_ = interface;
    signal_ = std::move(signal);
    if (auto* const open = connections_.openOne(Bus::Session)) subscribe(open);
}

void DBusClient::subscribe(GDBusConnection* connection) {
    if (!signal_) return;
    unsubscribe();
    listenedOn_.reset(G_DBUS_CONNECTION(g_object_ref(connection)));
    connections_.context_->within([this] {
        subscription_ = g_dbus_connection_signal_subscribe(
            listenedOn_.get(), listenedService_, listenedInterface_, nullptr, nullptr, nullptr,
            G_DBUS_SIGNAL_FLAGS_NONE,
            [](GDBusConnection*, const char*, const char*, const char*, const char* name,
               GVariant* values,
               gpointer self) noexcept { static_cast<DBusClient*>(self)->signal_(name, values); },
            this, nullptr);
    });
}

void DBusClient::unsubscribe() {
    if (subscription_ == 0) return;
    g_dbus_connection_signal_unsubscribe(listenedOn_.get(), std::exchange(subscription_, 0));
    listenedOn_.reset();
}

void DBusClient::getSharedBus(SharedBus then) {
    if (!usableAddress(Bus::Session, nullptr)) return;
    const auto got = [then = std::move(then)](GObject* /*none*/, GAsyncResult* result) {
        if (auto shared = harmless(g_bus_get_finish(result, nullptr))) then(std::move(shared));
    };
    connections_.context_->within([&] {
        g_bus_get(G_BUS_TYPE_SESSION, end_.get(), &Completion::arrived,
                  Completion::make(end_.get(), got));
    });
}

void DBusClient::finish(std::chrono::milliseconds patience) {
    connections_.context_->serveUntil([this] { return pending_ == 0; }, patience);
    // Else each client in turn would wait for the same bus.
    if (pending_ > 0) connections_.giveUpOpening();
}

}  // namespace reelvane
