#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace reelvane {

/// A short movie, made by the real ffmpeg when it is first asked for and kept in the build folder.
/// The name is one of the recipes' names; its extension chooses the container.
[[nodiscard]] std::filesystem::path movie(std::string_view name);

/// What the subtitles of every movie say, cue by cue, one line each.
inline constexpr std::string_view kCues = "Grüße\nzweite Zeile\nEnde\n";
/// The same cues as an SRT file.
[[nodiscard]] std::string subtitleFile();

}  // namespace reelvane
