#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

/// The extensions of the movies that are taken, in lower case.
inline constexpr auto kMovieFileTypes = std::to_array<std::string_view>(
    {"mkv", "mp4", "mov", "ogm", "wmv", "mpg", "flv", "webm", "ts"});
/// The extensions of external subtitle files, in lower case.
inline constexpr auto kSubtitleFileTypes =
    std::to_array<std::string_view>({"srt", "ass", "ssa", "smi", "sub"});

/// Opened files, told apart by their extensions.
struct SortedFiles {
    std::vector<std::filesystem::path> movies{};     ///< last given first, to be taken from the end
    std::vector<std::filesystem::path> subtitles{};  ///< in the order in which they count
};

/// Reads the first four bytes of a file as an integer in host byte order.
using FirstBytesReader = std::function<std::optional<std::uint32_t>(const std::filesystem::path&)>;

/// Sorts the paths; what is neither movie nor subtitle is left out, and so is a "sub" file that
/// holds pictures. Reads nothing but the first bytes of "sub" files.
[[nodiscard]] SortedFiles sortFiles(std::span<const std::filesystem::path> paths,
                                    const FirstBytesReader& firstBytes);

/// True for the extensions of external subtitle files.
[[nodiscard]] bool isSubtitleFile(const std::filesystem::path& path);

/// True when a drag with these is welcome: a movie, a folder that may hold some, or what is told
/// to be neither. Subtitle files alone are of no use. Looks at the names alone.
[[nodiscard]] bool acceptsDrag(std::span<const std::filesystem::path> paths);

/// What the open panel lets the user choose: the movies' extensions, then the subtitles'.
[[nodiscard]] std::vector<std::string> openableFileTypes();

}  // namespace reelvane
