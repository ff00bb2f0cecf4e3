#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/thread_pool.h"
#include "support/ports/system_log.h"
#include "support/ports/workspace.h"

namespace reelvane {

/// The desktop's handlers and file manager by GIO, in the background, and its Trash. At its end
/// what was asked for is still done, within a second. A failure is logged. It knows neither
/// keyboard nor clipboard: a window program answers for them itself.
class GioWorkspace : public Workspace {
public:
    explicit GioWorkspace(SystemLog& log);

    void openURL(const std::string& url, std::function<void(bool opened)> answered) override;
    void copyText(const std::string& /*text*/) override {}
    void reveal(const std::filesystem::path& file) override;
    [[nodiscard]] std::string recycle(const std::filesystem::path& file) override;
    [[nodiscard]] bool isShiftKeyHeld() const override { return false; }

private:
    BackgroundThread handlers_;
    BackgroundThread fileManager_;  // apart: the first reveal may take seconds
};

}  // namespace reelvane
