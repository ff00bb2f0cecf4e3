#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace reelvane {

/// One stream of the input: its line, taken apart, and what stands below it up to the next one.
struct StreamBlock {
    int index = 0;
    std::string_view language{};     ///< as it stands there; empty: none
    std::string_view kind{};         ///< "Video", "Audio", "Subtitle", "Data", "Attachment"
    std::string_view details{};      ///< "h264 (High), yuv420p, 1920x1080, 25 fps"
    bool isImageAttachment = false;  ///< its metadata names an image type
    std::string_view title{};        ///< its first line; empty when it has none
    /// What Matroska's statistics say: tags that its writers add to each track.
    std::optional<std::uint64_t> promisedPictures{};
    std::optional<int> promisedSeconds{};
    std::vector<std::string_view> sideData{};  ///< "DOVI configuration record: version: 1.0, ..."
};

/// What the duration line says.
struct ReportSummary {
    std::optional<std::string_view> duration{};  ///< the text, however it reads
    std::optional<std::string_view> bitrate{};   ///< with its unit
    std::optional<int> runtimeSeconds{};
};

/// A report cut up: the first of two passes. All views point into the report's text.
struct ReportOutline {
    ReportSummary summary{};
    std::string_view demuxer{};  ///< empty: no input line
    std::vector<StreamBlock> streams{};
};

/// Cuts a report up. Linear in its size; no text is too odd for it. Lines end at a line feed alone,
/// and count only where ffmpeg's av_dump_format() writes them (libavformat/dump.c): the input line
/// at the margin, the duration line two columns in, a stream line two or (in a group, and before
/// version 5) four columns in. What is deeper than a line "Metadata:" above it is the movie's own
/// text, whatever it says.
[[nodiscard]] ReportOutline outlineOf(std::string_view text);

/// Whether the text is one that only ffmpeg prints.
[[nodiscard]] bool isFromFfmpeg(std::string_view text);

/// Whether the demuxer ("hls", or a list of names with commas) reads a text that names other files
/// and then opens those, so that a file dressed as a movie could reach anything on the machine.
[[nodiscard]] bool isPlaylistDemuxer(std::string_view demuxer);

/// The duration in whole seconds; -1 when the report holds none that can be read, or
/// more than one.
[[nodiscard]] int durationInReport(std::string_view text);

}  // namespace reelvane
