#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace reelvane {

/// The window that a panel hangs on.
enum class PanelParent { MainWindow, PreferencesWindow };

struct OpenPanelRequest {
    PanelParent parent = PanelParent::MainWindow;
    bool chooseFolder = false;  ///< one folder, no files; otherwise files, several at once
    std::vector<std::string> allowedTypes{};  ///< extensions without the dot; empty: all
    std::filesystem::path folder{};  ///< where the panel starts; empty: as the user left it
    std::stop_token stop{};          ///< after a request no panel is shown, and no answer comes
};

struct SavePanelRequest {
    PanelParent parent = PanelParent::MainWindow;
    std::filesystem::path folder{};
    std::string fileName{};
    std::string extension{};  ///< the only type allowed, shown
    std::stop_token stop{};   ///< after a request no panel is shown, and no answer comes
};

/// Open and save panels. Main thread only; the answer comes later, on the main thread, once.
class Panels {
public:
    virtual ~Panels() = default;
    /// The chosen paths; empty when the user cancelled.
    virtual void open(const OpenPanelRequest& request,
                      std::function<void(std::vector<std::filesystem::path>)> answer) = 0;
    /// The chosen path; absent when the user cancelled. The user agreed to replace what is there.
    virtual void save(const SavePanelRequest& request,
                      std::function<void(std::optional<std::filesystem::path>)> answer) = 0;
};

}  // namespace reelvane
