#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

/// What the command line of the window program asks for.
struct LaunchArguments {
    enum class Action { Open, PrintVersion, PrintHelp };
    Action action = Action::Open;
    std::vector<std::filesystem::path> files{};  ///< absolute
    std::optional<std::string> problem{};        ///< absent: it can be followed
};

/// `words` without the program's name, and without what Qt takes for itself. Relative names are
/// those of `folder`; "file:" URLs are taken as files are, since desktops may pass either.
[[nodiscard]] LaunchArguments parseLaunchArguments(const std::vector<std::string>& words,
                                                   const std::filesystem::path& folder);

/// What --help prints.
[[nodiscard]] std::string_view launchHelp();

/// What has to be done even where the program is left by exit(), as Qt does when the connection to
/// the screen breaks: at that place, while this lives. One at a time; main thread only.
class ExitWork final {
public:
    explicit ExitWork(std::function<void()> work);
    ~ExitWork();
    ExitWork(const ExitWork&) = delete;
    ExitWork& operator=(const ExitWork&) = delete;
    ExitWork(ExitWork&&) = delete;
    ExitWork& operator=(ExitWork&&) = delete;
};

}  // namespace reelvane
