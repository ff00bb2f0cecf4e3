#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace reelvane {

struct Notification {
    std::string title{};
    std::string text{};
    std::optional<std::string> actionTitle{};     ///< absent: no button
    std::optional<std::filesystem::path> path{};  ///< handed back when the user clicks
};

/// The desktop's notifications, with the default sound. Main thread only; delivering never waits.
class Notifications {
public:
    using Activation = std::function<void(const Notification&)>;
    virtual ~Notifications() = default;
    virtual void deliver(const Notification& notification) = 0;
    /// What to do when the user clicks a delivered notification or its button.
    virtual void setActivation(Activation activation) = 0;
};

}  // namespace reelvane
