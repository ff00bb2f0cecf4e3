#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/dbus_connection.h"
#include "support/ports/system_log.h"
#include "support/ports/workspace.h"

namespace reelvane {

/// The desktop's handlers by GIO, on a thread, because starting one waits; its file manager; its
/// Trash. At its end what was asked for is still done, within two seconds. A failure is logged. It
/// knows neither keyboard nor clipboard: a window program answers for them itself.
class GioWorkspace : public Workspace {
public:
    GioWorkspace(SystemLog& log, DBusConnections& buses);
    GioWorkspace(const GioWorkspace&) = delete;
    GioWorkspace& operator=(const GioWorkspace&) = delete;
    GioWorkspace(GioWorkspace&&) = delete;
    GioWorkspace& operator=(GioWorkspace&&) = delete;
    ~GioWorkspace() override;

    /// Answers on the thread.
    void openURL(const std::string& url, std::function<void(bool opened)> answered) override;
    void copyText(const std::string& /*text*/) override {}
    void reveal(const std::filesystem::path& file) override;
    [[nodiscard]] std::string recycle(const std::filesystem::path& file) override;
    [[nodiscard]] bool isShiftKeyHeld() const override { return false; }

private:
    class Handlers;

    [[nodiscard]] std::string uriOf(const std::filesystem::path& path);

    SystemLog& log_;
    std::unique_ptr<Handlers> handlers_;
    DBusClient fileManager_;
};

}  // namespace reelvane
