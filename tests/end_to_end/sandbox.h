#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/end_to_end/child.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {

/// A user of their own: home, preferences and output folder, no desktop and no message bus.
class Sandbox {
public:
    Sandbox();

    [[nodiscard]] const std::filesystem::path& root() const { return folder_.path(); }
    [[nodiscard]] std::filesystem::path out() const { return root() / "out"; }
    /// Every file under out(), with anything that a conversion left in the home folder.
    [[nodiscard]] std::vector<std::string> leftovers() const;

    /// From now on this shell script stands in for ffmpeg; it calls the real one.
    void useFfmpeg(std::string_view script);
    /// From now on ffmpeg reads its input no faster than it plays, so that a run can be met.
    void slowDown();

    /// The command that runs reelvane-cli as this user.
    [[nodiscard]] std::vector<std::string> command(std::vector<std::string> arguments) const;
    /// Converts a movie into out().
    [[nodiscard]] Outcome convert(const std::filesystem::path& movie,
                                  std::vector<std::string> options = {}) const;

    /// How many processes have a path of this sandbox among their arguments.
    [[nodiscard]] int processes() const;

private:
    TemporaryFolder folder_;
    std::string ffmpeg_ = "ffmpeg";
};

/// Waits until the condition holds; false when that takes longer than ten seconds.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition) {
    for (int attempt = 0; attempt < 1000; ++attempt) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return condition();
}

}  // namespace reelvane
