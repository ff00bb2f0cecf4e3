#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/dbus_connection.h"
#include "support/ports/application_instance.h"
#include "support/ports/system_log.h"

namespace reelvane {

/// The program as a name on the session bus, which one process can own, with the interface
/// org.freedesktop.Application behind it. A request is answered when the program takes it; who gets
/// no answer, because this process has gone, opens the files itself. So end this object as soon as
/// the program opens no more files. Without a bus every start stands alone.
class DBusApplication final : public ApplicationInstance {
public:
    /// `identifier` is the name on the bus, and that of the desktop file.
    DBusApplication(SystemLog& log, std::string identifier);
    DBusApplication(const DBusApplication&) = delete;
    DBusApplication& operator=(const DBusApplication&) = delete;
    DBusApplication(DBusApplication&&) = delete;
    DBusApplication& operator=(DBusApplication&&) = delete;
    ~DBusApplication() override;

    [[nodiscard]] Role claim(const std::vector<std::filesystem::path>& files) override;
    void setOpen(Open open) override;
    void setAction(Action action) override;

private:
    using Invocation = GObjectHandle<GDBusMethodInvocation>;
    /// Requests of one kind, in order, from when they come to when the program takes them.
    template <typename Request>
    struct Requests {
        std::function<void(const Request&)> handler;
        std::deque<std::pair<Invocation, Request>> waiting;

        void deliver();
    };
    enum class Name { Owned, Taken, Refused };
    enum class HandOver { Done, OwnerGone, Failed };

    bool exportInterface();
    [[nodiscard]] Name askForName();
    [[nodiscard]] VariantHandle askBus(const char* method, GVariant* arguments,
                                       GLibError& error) const;
    [[nodiscard]] HandOver handOver(const std::vector<std::filesystem::path>& files);
    void called(const std::string& method, GVariant* values, Invocation invocation);
    [[nodiscard]] OpenRequest openRequest(GVariant* uris, GVariant* platformData);
    void disconnect();

    SystemLog& log_;
    std::string identifier_;
    std::string objectPath_;
    Requests<OpenRequest> opens_;
    Requests<std::string> actions_;
    GObjectHandle<GDBusConnection> connection_;
    guint exported_ = 0;
};

// What the messages of the interface org.freedesktop.Application are made of.

inline constexpr auto kApplicationInterface = "org.freedesktop.Application";
inline constexpr auto kApplicationDescription =
    R"(<node><interface name='org.freedesktop.Application'>
<method name='Activate'><arg type='a{sv}' name='platform_data' direction='in'/></method>
<method name='Open'><arg type='as' name='uris' direction='in'/>
<arg type='a{sv}' name='platform_data' direction='in'/></method>
<method name='ActivateAction'><arg type='s' name='action_name' direction='in'/>
<arg type='av' name='parameter' direction='in'/>
<arg type='a{sv}' name='platform_data' direction='in'/></method>
</interface></node>)";

/// As the desktop entry specification makes it from the name.
[[nodiscard]] std::string applicationObjectPath(const std::string& identifier);

/// The token that this process was started with, as the platform data of a message (floating).
[[nodiscard]] GVariant* platformData();
/// The token in a message's platform data, or empty.
[[nodiscard]] std::string activationToken(GVariant* platformData);

/// The files as absolute URIs (floating), which keep every byte of the names.
[[nodiscard]] GVariant* urisOf(const std::vector<std::filesystem::path>& files);
struct LocalFiles {
    std::vector<std::filesystem::path> files{};
    std::vector<std::string> otherURIs{};  ///< those that name no file of this machine
};
[[nodiscard]] LocalFiles localFilesOf(GVariant* uris);

}  // namespace reelvane
