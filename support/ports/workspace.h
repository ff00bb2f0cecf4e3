#pragma once

#include <filesystem>
#include <string>

namespace reelvane {

/// What the desktop does with files and links. Main thread only; nothing here waits.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// Opens a link (web page or mail) with the user's program for it.
    virtual void openURL(const std::string& url) = 0;
    /// Shows the file, selected, in the user's file manager.
    virtual void reveal(const std::filesystem::path& file) = 0;
    /// Moves the file to the Trash; never deletes it.
    virtual void recycle(const std::filesystem::path& file) = 0;
    [[nodiscard]] virtual bool isShiftKeyHeld() const = 0;
    [[nodiscard]] virtual bool isOptionKeyHeld() const = 0;
};

}  // namespace reelvane
