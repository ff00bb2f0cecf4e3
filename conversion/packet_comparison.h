#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

class ProcessLauncher;

/// One movie's picture as it lies in a file.
struct PictureFile {
    std::filesystem::path path{};
    std::string stream{};   ///< as "-map" takes it: "0:1"
    std::string codec{};    ///< "h264", as a report names it
    bool hasEdits = false;  ///< MP4 and QuickTime can leave packets out of what is played
};

/// All of a picture's packets together.
struct PictureDigest {
    std::string hash{};
    std::size_t packets = 0;

    friend bool operator==(const PictureDigest&, const PictureDigest&) = default;
};

/// Whether the demuxer of a report, "mov,mp4,m4a,3gp,3g2,mj2", reads files with edit lists.
[[nodiscard]] bool readsEdits(std::string_view demuxer);

/// What makes the converter hash every packet of the picture, those that are never played included.
/// Transport streams and MP4 wrap the units of H.264 and HEVC differently, so these are unwrapped
/// first; the delimiters between pictures, which say nothing, are left out.
[[nodiscard]] std::vector<std::string> hashArguments(const PictureFile& picture);

/// Reads what such a run printed; absent when it is not all there.
[[nodiscard]] std::optional<PictureDigest> digestInOutput(std::string_view printed);

/// Reads a whole file at the lowest priority; absent when it could not be read without an error, or
/// when it was stopped. Blocks; any thread.
[[nodiscard]] std::optional<PictureDigest> digestOf(ProcessLauncher& launcher,
                                                    const std::filesystem::path& ffmpeg,
                                                    const PictureFile& picture,
                                                    const std::stop_token& stop);

}  // namespace reelvane
