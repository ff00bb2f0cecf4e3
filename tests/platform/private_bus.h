#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <functional>
#include <future>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <memory>
#include <mutex>
#include <string>
#include <sys/prctl.h>
#include <utility>

#include "platform/dbus_connection.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {

/// Serves the main loop while another thread waits for something.
template <typename Wait>
auto whileServing(Wait wait) {
    std::atomic<bool> done = false;
    auto answer = std::async(std::launch::async, [&] {
        auto waited = wait();
        done = true;
        g_main_context_wakeup(nullptr);
        return waited;
    });
    while (!done) g_main_context_iteration(nullptr, TRUE);
    return answer.get();
}

/// A message bus of the test's own that starts no service; it stands for both buses.
/// What the services on it are asked is kept in order.
class PrivateBus {
public:
    PrivateBus() {
        // It ends with the test, even if that crashes.
        const GObjectHandle<GSubprocessLauncher> launcher(
            g_subprocess_launcher_new(static_cast<GSubprocessFlags>(
                G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_SILENCE)));
        g_subprocess_launcher_set_child_setup(
            launcher.get(), [](gpointer) { ::prctl(PR_SET_PDEATHSIG, SIGKILL); }, nullptr, nullptr);
        daemon_.reset(g_subprocess_launcher_spawn(launcher.get(), nullptr, "dbus-daemon",
                                                  "--nofork", "--print-address", "--config-file",
                                                  configuration_.c_str(), nullptr));
        const GObjectHandle<GDataInputStream> output(
            g_data_input_stream_new(g_subprocess_get_stdout_pipe(daemon_.get())));
        const GLibText line(g_data_input_stream_read_line(output.get(), nullptr, nullptr, nullptr));
        ::setenv("DBUS_SESSION_BUS_ADDRESS", line.get(), 1);
        ::setenv("DBUS_SYSTEM_BUS_ADDRESS", line.get(), 1);
    }
    void record(std::string call) {
        const std::scoped_lock lock(mutex_);
        calls_.push_back(std::move(call));
        recorded_.notify_all();
    }
    /// The next call that any service got, as "Method(arguments)"; waits for it.
    [[nodiscard]] std::string nextCall() {
        return whileServing([this]() -> std::string {
            std::unique_lock lock(mutex_);
            const auto isThere = [this] { return !calls_.empty(); };
            if (!recorded_.wait_for(lock, std::chrono::seconds(10), isThere)) return "none";
            auto call = std::move(calls_.front());
            calls_.pop_front();
            return call;
        });
    }

private:
    struct EndDaemon {
        void operator()(GSubprocess* daemon) const {
            g_subprocess_force_exit(daemon);
            g_object_unref(daemon);
        }
    };

    TemporaryFolder folder_;
    std::filesystem::path configuration_ = folder_.write(
        "bus.conf",
        "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
        "<policy context='default'><allow send_destination='*'/><allow eavesdrop='true'/>"
        "<allow own='*'/></policy></busconfig>");
    std::unique_ptr<GSubprocess, EndDaemon> daemon_;
    std::mutex mutex_;
    std::condition_variable recorded_;
    std::deque<std::string> calls_;
};

/// A service on the private bus. It answers on GDBus's own thread, whatever the test waits for.
class MockService {
public:
    /// Makes the answer to a call; null leaves it without one.
    using Answer = std::function<GDBusMessage*(GDBusMessage* call)>;

    MockService(PrivateBus& bus, const char* name, Answer answer)
        : bus_(bus),
          answer_(std::move(answer)),
          connection_(g_dbus_connection_new_for_address_sync(
              std::getenv("DBUS_SESSION_BUS_ADDRESS"), kFlags, nullptr, nullptr, nullptr)) {
        {
            const std::scoped_lock lock(mutex_);
            g_dbus_connection_add_filter(connection_.get(), &MockService::received, this, nullptr);
        }
        const VariantHandle owned(g_dbus_connection_call_sync(
            connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", name, 4U), nullptr,
            G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    }

    /// An empty answer without values.
    static GDBusMessage* reply(GDBusMessage* call, GVariant* values = nullptr) {
        auto* const message = g_dbus_message_new_method_reply(call);
        g_dbus_message_set_body(message, values != nullptr ? values : g_variant_new("()"));
        return message;
    }
    static GDBusMessage* refuse(GDBusMessage* call) {
        return g_dbus_message_new_method_error_literal(call, "org.example.Refused", "not today");
    }

    void emit(const char* path, const char* interface, const char* name, GVariant* values) {
        const std::scoped_lock lock(mutex_);
        g_dbus_connection_emit_signal(connection_.get(), nullptr, path, interface, name, values,
                                      nullptr);
    }

private:
    static GDBusMessage* received(GDBusConnection* /*connection*/, GDBusMessage* message,
                                  gboolean incoming, gpointer self) {
        const auto type = g_dbus_message_get_message_type(message);
        if (incoming == FALSE || type != G_DBUS_MESSAGE_TYPE_METHOD_CALL) return message;
        static_cast<MockService*>(self)->handle(GObjectHandle<GDBusMessage>(message));
        return nullptr;
    }

    void handle(const GObjectHandle<GDBusMessage>& call) {
        const std::scoped_lock lock(mutex_);
        auto* const body = g_dbus_message_get_body(call.get());
        const GLibText text(body != nullptr ? g_variant_print(body, FALSE) : g_strdup("()"));
        auto* const answer = answer_(call.get());
        const std::string method = g_dbus_message_get_member(call.get());
        bus_.record(method + text.get());
        if (answer == nullptr) return;
        const GObjectHandle<GDBusMessage> owned(answer);
        g_dbus_connection_send_message(connection_.get(), answer, G_DBUS_SEND_MESSAGE_FLAGS_NONE,
                                       nullptr, nullptr);
    }

    static constexpr auto kFlags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);

    struct CloseConnection {
        void operator()(GDBusConnection* connection) const {
            g_dbus_connection_close_sync(connection, nullptr, nullptr);
            const std::scoped_lock lock(mutex_);  // waits for a call that is being answered
            g_object_unref(connection);
        }
    };

    PrivateBus& bus_;
    // Calls come on GDBus's thread, to which the lock hands over what the test's thread made.
    static inline std::mutex mutex_;
    Answer answer_;
    std::unique_ptr<GDBusConnection, CloseConnection> connection_;  // closed before all else goes
};

}  // namespace reelvane
