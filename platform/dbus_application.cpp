#include "platform/dbus_application.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "support/logging.h"

namespace reelvane {
namespace {

/// In milliseconds. The program that runs may be busy; nobody sees this process wait for it.
constexpr int kProgramPatience = 10'000;
constexpr int kBusPatience = 3'000;
/// So many owners in a row may vanish before this process stands alone.
constexpr int kAttempts = 10;

struct NodeRelease {
    void operator()(GDBusNodeInfo* node) const { g_dbus_node_info_unref(node); }
};
using NodeHandle = std::unique_ptr<GDBusNodeInfo, NodeRelease>;

bool saysOwnerIsGone(const GLibError& error) {
    return error.is(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) ||
           error.is(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
           error.is(G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER);
}

VariantHandle childOf(GVariant* tuple, gsize index) {
    return VariantHandle(g_variant_get_child_value(tuple, index));
}

/// By GLib's own names: in the environment, and in the platform data.
constexpr auto kTokens = std::to_array<std::pair<const char*, const char*>>(
    {{"XDG_ACTIVATION_TOKEN", "activation-token"}, {"DESKTOP_STARTUP_ID", "desktop-startup-id"}});

std::optional<std::filesystem::path> localFile(const char* uri) {
    char* host = nullptr;
    const GLibText name(g_filename_from_uri(uri, &host, nullptr));
    const GLibText ownedHost(host);
    if (!name) return std::nullopt;
    const std::string_view on = host != nullptr ? host : "";
    if (!on.empty() && on != "localhost" && on != g_get_host_name()) return std::nullopt;
    return name.get();
}

}  // namespace

template <typename Request>
void DBusApplication::Requests<Request>::deliver() {
    const auto handle = handler;  // may replace the original
    while (handle && !waiting.empty()) {
        auto [invocation, request] = std::move(waiting.front());
        waiting.pop_front();
        g_dbus_method_invocation_return_value(invocation.release(), nullptr);
        handle(request);
    }
}

DBusApplication::DBusApplication(SystemLog& log, std::string identifier)
    : log_(log),
      identifier_(std::move(identifier)),
      objectPath_(applicationObjectPath(identifier_)) {}

DBusApplication::~DBusApplication() {
    disconnect();
}

ApplicationInstance::Role DBusApplication::claim(const std::vector<std::filesystem::path>& files) {
    GLibError error;
    connection_ = openBus(Bus::Session, std::chrono::milliseconds(kBusPatience), error.out());
    if (!connection_) {
        log_.write(LogNotice, "Later starts will not find this process (" + error.message() + ").");
        return Role::Primary;
    }
    // Before the name is there: who finds its owner finds the interface.
    if (!exportInterface()) return Role::Primary;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (askForName() != Name::Taken) return Role::Primary;
        const auto outcome = handOver(files);
        if (outcome == HandOver::Failed) return Role::Primary;
        if (outcome == HandOver::Done) {
            disconnect();
            return Role::HandedOver;
        }
    }
    log_.write(LogWarning, "Every owner of " + identifier_ + " on the session bus has vanished.");
    return Role::Primary;
}

void DBusApplication::setOpen(Open open) {
    opens_.handler = std::move(open);
    opens_.deliver();
}

void DBusApplication::setAction(Action action) {
    actions_.handler = std::move(action);
    actions_.deliver();
}

bool DBusApplication::exportInterface() {
    static constexpr GDBusInterfaceVTable kCalls{
        [](GDBusConnection*, const char*, const char*, const char*, const char* method,
           GVariant* values, GDBusMethodInvocation* invocation,
           gpointer self) noexcept {  // an exception must not unwind GLib's frames: it ends here
            static_cast<DBusApplication*>(self)->called(method, values, Invocation(invocation));
        },
        nullptr,
        nullptr,
        {}};
    GLibError error;
    const NodeHandle node(g_dbus_node_info_new_for_xml(kApplicationDescription, nullptr));
    exported_ =
        g_dbus_connection_register_object(connection_.get(), objectPath_.c_str(), *node->interfaces,
                                          &kCalls, this, nullptr, error.out());
    if (exported_ == 0) log_.write(LogWarning, "No place on the session bus: " + error.message());
    return exported_ != 0;
}

DBusApplication::Name DBusApplication::askForName() {
    constexpr std::uint32_t kDoNotQueue = 4;
    constexpr std::uint32_t kExists = 3;
    GLibError error;
    const auto answer =
        askBus("RequestName", g_variant_new("(su)", identifier_.c_str(), kDoNotQueue), error);
    if (!answer) {
        log_.write(LogWarning, "The bus refuses the name " + identifier_ + ": " + error.message());
        return Name::Refused;
    }
    std::uint32_t outcome = 0;
    g_variant_get(answer.get(), "(u)", &outcome);
    return outcome == kExists ? Name::Taken : Name::Owned;
}

VariantHandle DBusApplication::askBus(const char* method, GVariant* arguments,
                                      GLibError& error) const {
    constexpr auto kBus = "org.freedesktop.DBus";
    return VariantHandle(g_dbus_connection_call_sync(
        connection_.get(), kBus, "/org/freedesktop/DBus", kBus, method, arguments,
        G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, kBusPatience, nullptr, error.out()));
}

DBusApplication::HandOver DBusApplication::handOver(
    const std::vector<std::filesystem::path>& files) {
    auto* const values = files.empty()
                             ? g_variant_new("(@a{sv})", platformData())
                             : g_variant_new("(@as@a{sv})", urisOf(files), platformData());
    GLibError error;
    const VariantHandle answer(g_dbus_connection_call_sync(
        connection_.get(), identifier_.c_str(), objectPath_.c_str(), kApplicationInterface,
        files.empty() ? "Activate" : "Open", values, nullptr,
        // Else the bus itself would start the program where the name has lost its owner.
        G_DBUS_CALL_FLAGS_NO_AUTO_START, kProgramPatience, nullptr, error.out()));
    if (answer) return HandOver::Done;
    if (saysOwnerIsGone(error)) return HandOver::OwnerGone;
    log_.write(LogWarning, "The process that owns " + identifier_ + ": " + error.message());
    // The request lies before a program that is busy: opened here as well, the files would be
    // opened twice.
    return error.is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ? HandOver::Done : HandOver::Failed;
}

void DBusApplication::called(const std::string& method, GVariant* values, Invocation invocation) {
    // GDBus lets only those through that the description has, with values of those types.
    if (method == "ActivateAction") {
        actions_.waiting.emplace_back(std::move(invocation),
                                      g_variant_get_string(childOf(values, 0).get(), nullptr));
        actions_.deliver();
        return;
    }
    opens_.waiting.emplace_back(
        std::move(invocation),
        method == "Open"
            ? openRequest(childOf(values, 0).get(), childOf(values, 1).get())
            : OpenRequest{.activationToken = activationToken(childOf(values, 0).get())});
    opens_.deliver();
}

ApplicationInstance::OpenRequest DBusApplication::openRequest(GVariant* uris,
                                                              GVariant* platformData) {
    auto found = localFilesOf(uris);
    for (const auto& uri : found.otherURIs) {
        log_.write(LogNotice, "Not a file on this computer: " + uri);
    }
    return {.files = std::move(found.files), .activationToken = activationToken(platformData)};
}

void DBusApplication::disconnect() {
    if (!connection_) return;
    // The bus handles what it gets in order: with its answer, all that was taken is known to be
    // taken, and nothing is sent here any more.
    GLibError ignored;
    const auto released = askBus("ReleaseName", g_variant_new("(s)", identifier_.c_str()), ignored);
    // Whatever came since gets no answer, not even that there is no such object.
    g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
    if (exported_ != 0) g_dbus_connection_unregister_object(connection_.get(), exported_);
    opens_.waiting.clear();
    actions_.waiting.clear();
    connection_.reset();
}

std::string applicationObjectPath(const std::string& identifier) {
    std::string path = "/" + identifier;
    for (char& c : path) {
        if (c == '.') c = '/';
        if (c == '-') c = '_';
    }
    return path;
}

GVariant* platformData() {
    GVariantBuilder data;
    g_variant_builder_init(&data, G_VARIANT_TYPE_VARDICT);
    for (const auto& [variable, key] : kTokens) {
        const char* const token = std::getenv(variable);
        if (token == nullptr || *token == '\0') continue;
        g_variant_builder_add(&data, "{sv}", key, g_variant_new_string(validUtf8(token).c_str()));
    }
    return g_variant_builder_end(&data);
}

std::string activationToken(GVariant* platformData) {
    for (const auto& [variable, key] : kTokens) {
        const char* token = nullptr;
        if (g_variant_lookup(platformData, key, "&s", &token) != FALSE) return token;
    }
    return {};
}

GVariant* urisOf(const std::vector<std::filesystem::path>& files) {
    GVariantBuilder uris;
    g_variant_builder_init(&uris, G_VARIANT_TYPE_STRING_ARRAY);
    for (const auto& file : files) {
        std::error_code error;
        const auto absolute = std::filesystem::absolute(file, error);
        const GLibText uri(g_filename_to_uri(absolute.c_str(), nullptr, nullptr));
        if (uri) g_variant_builder_add(&uris, "s", uri.get());
    }
    return g_variant_builder_end(&uris);
}

LocalFiles localFilesOf(GVariant* uris) {
    LocalFiles found;
    GVariantIter items;
    g_variant_iter_init(&items, uris);
    const char* uri = nullptr;
    while (g_variant_iter_next(&items, "&s", &uri) != FALSE) {
        if (auto file = localFile(uri)) {
            found.files.push_back(std::move(*file));
        } else {
            found.otherURIs.emplace_back(uri);
        }
    }
    return found;
}

}  // namespace reelvane
