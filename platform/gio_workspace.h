#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/background_thread.h"
#include "support/ports/system_log.h"
#include "support/ports/workspace.h"

namespace reelvane {

/// The desktop's handlers, file manager and Trash by GIO, in the background. At its end what was
/// asked for is still done, within a second. A failure is logged. It knows no keyboard: a window
/// program answers for the keys itself.
class GioWorkspace : public Workspace {
public:
    explicit GioWorkspace(SystemLog& log);

    void openURL(const std::string& url) override;
    void reveal(const std::filesystem::path& file) override;
    void recycle(const std::filesystem::path& file) override;
    [[nodiscard]] bool isShiftKeyHeld() const override { return false; }
    [[nodiscard]] bool isOptionKeyHeld() const override { return false; }

private:
    BackgroundThread handlers_;
    BackgroundThread fileManager_;  // apart: the first reveal may take seconds
};

}  // namespace reelvane
