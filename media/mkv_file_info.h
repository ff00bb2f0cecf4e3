#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "media/subtitle_file.h"
#include "support/held_file.h"

namespace reelvane {

class Translations;

/// One audio stream of the input.
struct AudioTrack {
    int stream = 0;          ///< its index in the input
    std::string language{};  ///< as the report has it; "unk" where it has none
    std::string codec{};     ///< "ac3"
    bool surround = false;   ///< 5.1 channels or the like
    int hz = 0;              ///< sampling rate; 0 when the report gives none

    /// Whether ffmpeg knows a way to read or to copy it.
    [[nodiscard]] bool isKnown() const { return codec != "none"; }
};

/// "#1: eng (ac3) [5.1]": how a track stands in menus and lists.
[[nodiscard]] std::string text(const AudioTrack& track);

/// Whether something may lie at the destination.
enum class OutputClaim {
    None,   ///< nothing did when the path was chosen; a path that is taken meanwhile is exchanged
    Chosen  ///< the user chose this very path and agreed to replace what is there
};

/// One probed input file. Filled once by the probe, then owned by the job that converts it.
struct MKVFileInfo {
    std::vector<AudioTrack> audioTrackInformation{};  ///< in report order
    std::vector<int> subtitleTrackIDs{};              ///< text subtitles, in report order
    std::vector<int> forcedSubtitleTrackIDs{};        ///< those of them that are marked as forced
    std::vector<std::string> subtitleLanguages{};     ///< of subtitleTrackIDs, in the same order
    std::map<int, std::string> trackTitles{};         ///< by stream index, where there is one
    std::string informationString{};                  ///< one line, in English
    std::optional<std::string> duration{};            ///< as the report says it, and the next too
    std::optional<std::string> bitrate{};
    std::string fileName{};                                  ///< last component of `fileURL`
    std::filesystem::path fileURL{};                         ///< absolute
    std::optional<std::filesystem::path> destinationURL{};   ///< set when the file is added
    OutputClaim outputClaim = OutputClaim::None;             ///< set when the file is added
    std::optional<int> videoTrackID{};                       ///< absent: no usable video
    std::optional<int> runtimeSeconds{};                     ///< absent: no readable duration
    std::uint64_t fileSize = 0;                              ///< bytes; 0: could not be read
    std::optional<std::filesystem::path> subtitleFileURL{};  ///< an external subtitle file
    SubtitleFormat subtitleFormat{};                         ///< of that file
    std::optional<std::filesystem::path> securityURL{};      ///< the folder whose access is open
    std::string videoCodec{};                                ///< of the accepted video stream
    std::string resolution{};                                ///< "1920x1080"; empty: none found
    std::optional<int> referenceFrames{};                    ///< absent: the report has no count
    bool namesColour = false;                 ///< colours, range, HDR: see VideoStreamFact
    std::optional<int> dolbyVisionProfile{};  ///< absent: no Dolby Vision record
    /// What Matroska's statistics say of the picture, where they can be read.
    std::optional<std::uint64_t> promisedPictures{};
    std::optional<int> promisedSeconds{};
    bool hasOtherPictures = false;          ///< video streams that a player could show instead
    int subtitleCount = 0;                  ///< streams of any subtitle kind
    std::string demuxer{};                  ///< "matroska,webm"
    std::optional<FileVersion> identity{};  ///< as it was before it was probed
    std::vector<std::string> warnings{};    ///< what the user was not told when it was taken in
};

/// What informationString says, in the user's language; a subtitle file counts as "+1".
[[nodiscard]] std::string informationText(const Translations& translations,
                                          const MKVFileInfo& info);

/// A text for debugging and problem reports with the main properties, one to a line.
[[nodiscard]] std::string description(const MKVFileInfo& info);

/// The language that a report's word names; empty for "unk" and "und", which name none.
[[nodiscard]] std::string_view namedLanguage(std::string_view word);

}  // namespace reelvane
