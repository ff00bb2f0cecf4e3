#pragma once

#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include <QImage>

namespace reelvane {

class ProcessLauncher;

/// What a poster is made with; by value, so that it can be made in the background.
struct PosterTools {
    ProcessLauncher* launcher = nullptr;
    std::filesystem::path ffmpeg{};
    int side = 0;  ///< the most that the picture may measure, in pixels
};

/// What ffmpeg's report says of a movie, as far as its poster goes.
struct PosterFacts {
    bool readable = false;  ///< ffmpeg knows the format, and it is none that names other files
    int seconds = 0;        ///< 0: unknown
    bool highDynamicRange = false;
};
[[nodiscard]] PosterFacts posterFactsIn(std::string_view report);

/// One way to get a picture out of a movie.
struct PosterAttempt {
    int milliseconds = 0;     ///< where to look
    bool keyFrames = true;    ///< only pictures that need no other one: fast
    bool toneMapped = false;  ///< brought from high dynamic range to an ordinary screen

    [[nodiscard]] bool operator==(const PosterAttempt&) const = default;
};
/// The best first.
[[nodiscard]] std::vector<PosterAttempt> posterAttempts(const PosterFacts& facts);
[[nodiscard]] std::vector<std::string> posterArguments(const std::filesystem::path& movie,
                                                       const PosterAttempt& attempt, int side);

/// Whether a picture shows next to nothing, as the black one before a scene does.
[[nodiscard]] bool isBlank(const QImage& picture);

struct MadePoster {
    QImage picture{};                     ///< null: none could be made
    std::optional<int> runtimeSeconds{};  ///< absent: unknown
    bool movieHasNone = false;            ///< it would be the same another time
};

/// Makes the poster of a movie by child processes that give way to all else. Blocks; any thread.
[[nodiscard]] MadePoster makePoster(const std::filesystem::path& file, const PosterTools& tools,
                                    const std::stop_token& stop);

}  // namespace reelvane
