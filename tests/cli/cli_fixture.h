#pragma once

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/end_to_end/child.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {

/// The real reelvane-cli in a user's home of its own, with the scripted stand-in for ffmpeg.
class CliTest : public testing::Test {
protected:
    static constexpr std::string_view kReport =
        "Input #0, matroska,webm, from 'x':\n"
        "  Duration: 00:00:12.00, start: 0.000000, bitrate: 800 kb/s\n"
        "  Stream #0:0: Video: h264 (High), yuv420p, 320x240, 25 fps\n"
        "  Stream #0:1(eng): Audio: ac3, 48000 Hz, stereo, fltp, 192 kb/s\n"
        "  Stream #0:2(ger): Audio: aac (LC), 48000 Hz, stereo, fltp\n";

    static constexpr std::string_view kUsualScript = R"(cd "$0" && exec "$@" 2>stderr)";

    /// A movie whose conversion goes as the lines say.
    void movie(std::string_view name, std::string_view directives = {}) const {
        folder_.write(name, std::string(kReport) + std::string(directives));
    }
    [[nodiscard]] std::filesystem::path path(std::string_view name) const {
        return folder_.path() / name;
    }

    /// Runs in the temporary folder; standard error goes into the file "stderr".
    [[nodiscard]] std::vector<std::string> command(std::vector<std::string> arguments) const {
        std::vector<std::string> words{"env", "-u", "XDG_CONFIG_HOME", "-u", "XDG_DATA_HOME"};
        for (const auto& variable : environment_) words.push_back(variable);
        words.insert(words.end(),
                     {"HOME=" + path("home").native(), "DBUS_SESSION_BUS_ADDRESS=disabled:",
                      "DBUS_SYSTEM_BUS_ADDRESS=disabled:", "LANGUAGE=en", "sh", "-c",
                      std::string(kUsualScript), folder_.path().native(), REELVANE_CLI});
        words.insert(words.end(), std::make_move_iterator(arguments.begin()),
                     std::make_move_iterator(arguments.end()));
        return words;
    }
    /// The same, run by this script of the shell in place of the usual one; it has the program and
    /// its arguments in "$@".
    [[nodiscard]] Outcome cliIn(const std::string& script,
                                std::vector<std::string> arguments) const {
        auto words = command(std::move(arguments));
        *std::ranges::find(words, kUsualScript) = "cd \"$0\" && " + script;
        return run(words);
    }
    [[nodiscard]] Outcome cli(std::vector<std::string> arguments) const {
        return run(command(std::move(arguments)));
    }
    [[nodiscard]] std::string errors() const { return content("stderr"); }
    [[nodiscard]] std::string content(std::string_view name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// The objects of a text with one per line.
    static std::vector<nlohmann::json> objects(const std::string& text) {
        std::vector<nlohmann::json> found;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            found.push_back(nlohmann::json::parse(line));
        }
        return found;
    }
    static std::vector<std::string> eventNames(const std::string& text) {
        std::vector<std::string> names;
        for (const auto& event : objects(text)) names.push_back(event.at("event"));
        return names;
    }

    /// Waits until the condition holds; a test that waits in vain fails.
    template <typename Condition>
    void await(Condition condition) const {
        for (int i = 0; i < 1000 && !condition(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        ASSERT_TRUE(condition()) << errors();
    }
    void awaitFile(const std::filesystem::path& file) const {
        await([&] { return std::filesystem::exists(file); });
    }
    [[nodiscard]] bool hasProgressFiles() const {
        const auto documents = path("home/Documents");
        return std::filesystem::exists(documents) && !std::filesystem::is_empty(documents);
    }

    /// Whether some process has this path among its arguments.
    static bool isUsed(const std::filesystem::path& file) {
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            std::ifstream list(entry.path() / "cmdline", std::ios::binary);
            std::ostringstream arguments;
            arguments << list.rdbuf();  // throws nothing where the process ends meanwhile
            if (arguments.str().find(file.native() + '\0') != std::string::npos) return true;
        }
        return false;
    }

    TemporaryFolder folder_;
    std::vector<std::string> environment_{"REELVANE_FFMPEG=" REELVANE_FAKE_FFMPEG};
};

}  // namespace reelvane
