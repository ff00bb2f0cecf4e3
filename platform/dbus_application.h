#pragma once

#include <deque>
#include <string>
#include <utility>

#include "platform/gio_handles.h"
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
    struct Waiting {
        std::function<void(const Request&)> taker;
        std::deque<std::pair<Invocation, Request>> requests;

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
    Waiting<OpenRequest> opens_;
    Waiting<std::string> actions_;
    GObjectHandle<GDBusConnection> connection_;
    guint exported_ = 0;
};

}  // namespace reelvane
