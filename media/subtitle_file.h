#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "media/text_encoding.h"

namespace reelvane {

class Translations;

/// What the converter has to be told of a subtitle file.
struct SubtitleFormat {
    std::string demuxer{};  ///< the converter's name of its format: "srt"; empty: not looked into
    FoundEncoding encoding{};
    bool hasByteOrderMark = false;
    bool encodingIsChosen = false;  ///< `encoding` is the user's word for this very file
    /// Where nobody can tell the encoding: the first lines outside ASCII as they are, two at most.
    std::vector<std::string> samples{};
};

/// What kept a file from being subtitles.
enum class SubtitleProblem {
    None,
    Gone,    ///< nothing lies there any more
    NoFile,  ///< a folder, a pipe or a device
    Unreadable,
    TooLarge,
    Pictures,    ///< a program stream, which holds its subtitles as pictures
    NoText,      ///< a movie or the like under a subtitle file's name
    BareUtf16,   ///< without the byte-order mark that the converter goes by
    Playlist,    ///< it would make the converter read other files
    NoSubtitles  ///< a text of no known format
};

struct SubtitleLook {
    SubtitleProblem problem = SubtitleProblem::None;
    SubtitleFormat format{};
};

/// Looks into a file that is named like subtitles. Reads no more than its first 32 MB; blocks, and
/// may be called on any thread.
[[nodiscard]] SubtitleLook lookIntoSubtitle(const std::filesystem::path& file);

/// The look at a file's content. Pure.
[[nodiscard]] SubtitleLook lookIntoSubtitleText(std::string_view content);

/// One sentence on why the file is left out, in the user's language; empty without a problem.
[[nodiscard]] std::string subtitleProblemText(const Translations& translations,
                                              const std::filesystem::path& file,
                                              SubtitleProblem problem);

}  // namespace reelvane
