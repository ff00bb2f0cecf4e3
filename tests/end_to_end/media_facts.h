#pragma once

#include <filesystem>
#include <string>

namespace reelvane {

/// The tracks as ffprobe sees them, as "h264:avc1 aac:2:ger ac3:6:eng mov_text:ger". The brightest
/// pixel of an HDR10 picture follows its tag: "hevc:hvc1:1000".
[[nodiscard]] std::string tracksOf(const std::filesystem::path& file);

/// The major brand of an MP4 file, without trailing spaces.
[[nodiscard]] std::string brandOf(const std::filesystem::path& file);

/// Seconds.
[[nodiscard]] double durationOf(const std::filesystem::path& file);

enum class Picture {
    Packets,  ///< the coded bytes
    Frames    ///< the decoded frames: for containers that store the same bytes otherwise
};
/// A checksum over the whole picture track.
[[nodiscard]] std::string pictureHash(const std::filesystem::path& file, Picture picture);

/// The text of the first subtitle track, one line per cue.
[[nodiscard]] std::string cuesOf(const std::filesystem::path& file);

}  // namespace reelvane
