#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace reelvane {

/// What the desktop does with files and links. Main thread only, and nothing waits, but for the
/// Trash.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// Opens a link (web page or mail) with the user's program for it. `answered`, when given, is
    /// told on any thread whether a program was started; it may never be when this object ends.
    virtual void openURL(const std::string& url, std::function<void(bool opened)> answered) = 0;
    /// Puts the text on the clipboard, where the desktop has one.
    virtual void copyText(const std::string& text) = 0;
    /// Shows the file, selected, in the user's file manager.
    virtual void reveal(const std::filesystem::path& file) = 0;
    /// Moves the file to the Trash; never deletes it. Answers why that failed; empty: it is there.
    /// Any thread; waits for the disk.
    [[nodiscard]] virtual std::string recycle(const std::filesystem::path& file) = 0;
    [[nodiscard]] virtual bool isShiftKeyHeld() const = 0;
};

}  // namespace reelvane
