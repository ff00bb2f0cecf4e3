#include "tests/end_to_end/sandbox.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace reelvane {

namespace fs = std::filesystem;

Sandbox::Sandbox() {
    fs::create_directories(out());
    fs::create_directories(root() / "home/Documents");
    fs::create_directories(root() / "run");
    fs::permissions(root() / "run", fs::perms::owner_all);
}

std::vector<std::string> Sandbox::leftovers() const {
    std::vector<std::string> names;
    for (const auto& folder : {out(), root() / "home/Documents"}) {
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            names.push_back(entry.path().filename().native());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

void Sandbox::useFfmpeg(std::string_view script) {
    const auto file = root() / "ffmpeg";
    std::ofstream(file) << "#!/bin/sh\n" << script << "\n";
    fs::permissions(file, fs::perms::owner_all);
    ffmpeg_ = file.native();
}

void Sandbox::slowDown() {
    useFfmpeg("exec ffmpeg -re \"$@\"");
}

std::vector<std::string> Sandbox::command(std::vector<std::string> arguments) const {
    std::vector<std::string> words = {"env",
                                      "HOME=" + (root() / "home").native(),
                                      "XDG_RUNTIME_DIR=" + (root() / "run").native(),
                                      "LANGUAGE=de",
                                      "DBUS_SESSION_BUS_ADDRESS=disabled:",
                                      "DBUS_SYSTEM_BUS_ADDRESS=disabled:"};
    for (const char* variable : {"DISPLAY", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                                 "XDG_CACHE_HOME", "REELVANE_FFMPEG"}) {
        words.insert(std::next(words.begin()), {"-u", variable});
    }
    if (ffmpeg_ != "ffmpeg") words.push_back("REELVANE_FFMPEG=" + ffmpeg_);
    words.emplace_back(REELVANE_CLI);
    words.insert(words.end(), std::make_move_iterator(arguments.begin()),
                 std::make_move_iterator(arguments.end()));
    return words;
}

Outcome Sandbox::convert(const fs::path& movie, std::vector<std::string> options) const {
    options.insert(options.begin(), "convert");
    options.insert(options.end(), {"--to", out().native(), movie.native()});
    return run(command(std::move(options)));
}

int Sandbox::processes() const {
    int count = 0;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "cmdline", std::ios::binary);
        const std::string line{std::istreambuf_iterator<char>(file), {}};
        if (line.find(root().native()) != std::string::npos) ++count;
    }
    return count;
}

}  // namespace reelvane
