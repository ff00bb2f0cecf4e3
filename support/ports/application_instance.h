#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace reelvane {

/// One process per user session: the first one opens what later starts of the program were given.
/// Main thread only.
class ApplicationInstance {
public:
    enum class Role {
        Primary,    ///< this process is the program, and opens its files itself
        HandedOver  ///< another process has the files: leave
    };
    struct OpenRequest {
        std::vector<std::filesystem::path> files{};  ///< none: only come to the front
        std::string activationToken{};               ///< the desktop's leave to do so, or empty
    };
    using Open = std::function<void(const OpenRequest&)>;
    using Action = std::function<void(const std::string& name)>;

    virtual ~ApplicationInstance() = default;
    /// Once, when the program starts. Waits until a process that runs has taken the files, but some
    /// seconds at most: its main loop gets to them when it can.
    [[nodiscard]] virtual Role claim(const std::vector<std::filesystem::path>& files) = 0;
    /// What opens the files of later starts. Those that came before are delivered at once.
    virtual void setOpen(Open open) = 0;
    /// What runs an action that the desktop asks for by its name, as from the program's icon. Those
    /// that were asked for before are run at once.
    virtual void setAction(Action action) = 0;
};

}  // namespace reelvane
