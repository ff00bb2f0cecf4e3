#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace reelvane {

/// One stream line and what the lines below it, up to the next stream, say of it.
struct StreamBlock {
    std::string_view streamLine{};
    bool isImageAttachment = false;  ///< a line of its block names an image type
    std::string_view title{};        ///< its first line; empty when it has none
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

/// Cuts a report up. Linear in its size. Throws std::out_of_range on a duration line that is cut
/// short.
[[nodiscard]] ReportOutline outlineOf(std::string_view text);

/// Whether the text is one that only ffmpeg prints.
[[nodiscard]] bool isFromFfmpeg(std::string_view text);

/// The duration in whole seconds; -1 when the report holds none, or more than one. Throws
/// std::out_of_range when the one it holds has fewer than three parts.
[[nodiscard]] int durationInReport(std::string_view text);

}  // namespace reelvane
