#include "ui/launch_arguments.h"

#include <cstdlib>
#include <utility>

#include "support/make_string.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

std::filesystem::path fileNamed(const std::string& word, const std::filesystem::path& folder) {
    if (word.starts_with("file:")) {
        const auto url = QUrl::fromEncoded(QByteArray::fromStdString(word));
        if (auto path = toPath(url)) return *std::move(path);
    }
    return (folder / word).lexically_normal();
}

// A function that exit() calls takes no argument of ours.
std::function<void()>& pendingWork() {
    static std::function<void()> work;
    return work;
}

void doPendingWork() {
    if (const auto work = std::exchange(pendingWork(), {})) work();
}

}  // namespace

LaunchArguments parseLaunchArguments(const std::vector<std::string>& words,
                                     const std::filesystem::path& folder) {
    LaunchArguments parsed;
    bool onlyFiles = false;
    for (const auto& word : words) {
        if (onlyFiles || !word.starts_with('-')) {
            parsed.files.push_back(fileNamed(word, folder));
        } else if (word == "--") {
            onlyFiles = true;
        } else if (word == "-h" || word == "--help") {
            parsed.action = LaunchArguments::Action::PrintHelp;
        } else if (word == "-V" || word == "--version") {
            parsed.action = LaunchArguments::Action::PrintVersion;
        } else if (!parsed.problem) {
            parsed.problem =
                makeString("There is no option '%@'; 'reelvane --help' shows what there is.", word);
        }
    }
    return parsed;
}

std::string_view launchHelp() {
    return R"(Turns Matroska and other movies into MP4 files for Apple TV, iOS, QuickTime and game
consoles, in a window.

Usage: reelvane [FILE...]

Files are added to the window; when it is open already, to the one that is. Subtitle files given
with movies are paired by name.

Options:
  -V, --version        Print the version.
  -h, --help           Print this help.
  --                   What follows is a file name, also where it begins with '-'.

The same without a window, for scripts and servers: reelvane-cli --help
)";
}

ExitWork::ExitWork(std::function<void()> work) {
    pendingWork() = std::move(work);
    std::atexit(doPendingWork);
}

ExitWork::~ExitWork() {
    pendingWork() = {};
}

}  // namespace reelvane
