#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace reelvane {

enum class Mp4TrackKind { Video, Audio, Text, Other };

/// A number of a file that can be set in place.
struct Mp4Field {
    std::uint64_t offset = 0;  ///< from the start of the file
    std::size_t width = 0;     ///< in bytes; 0: the file has no such number
    std::uint64_t value = 0;
};

/// What of a track is played, by its edit list (ISO/IEC 14496-12, 8.6.6).
struct Mp4Edits {
    std::size_t parts = 0;    ///< entries that show media; 0: there is no list, all is played
    Mp4Field lastDuration{};  ///< of the last of them, in the movie's time scale
};

/// One track as the file's index describes it.
struct Mp4Track {
    std::uint32_t trackID = 0;
    Mp4TrackKind kind = Mp4TrackKind::Other;
    std::string handler{};        ///< "vide", "soun", "sbtl", "text", ...
    std::string codec{};          ///< the type of the first sample entry: "avc1", "mp4a", "tx3g"
    std::string language{};       ///< three letters; "und" when the file says so
    double seconds = 0;           ///< play time; 0: unknown
    double mediaSeconds = 0;      ///< of all its samples, played or left out; 0: unknown
    std::uint64_t timeScale = 1;  ///< units per second of the media's own times; never 0
    bool enabled = false;
    std::uint32_t flags = 0;           ///< of the track header, 24 bits; bit 0 is `enabled`
    std::uint32_t alternateGroup = 0;  ///< 0: in no group
    bool hasTitle = false;             ///< a name in its user data, as the converter writes titles
    std::uint64_t sampleCount = 0;
    std::uint64_t textCount = 0;    ///< of a text track: its samples without the empty ones
    std::uint64_t sampleBytes = 0;  ///< of all samples together

    Mp4Edits edits{};
    Mp4Field duration{};  ///< play time in the movie's time scale

    // Where the fields that can be set in place lie, from the start of the file.
    std::uint64_t flagsOffset = 0;                      ///< 3 bytes
    std::uint64_t alternateGroupOffset = 0;             ///< 2 bytes
    std::uint64_t languageOffset = 0;                   ///< 2 bytes
    std::optional<std::uint64_t> displayFlagsOffset{};  ///< 4 bytes; "tx3g" only
    std::uint32_t displayFlags = 0;
};

/// What the box structure of a file says (ISO/IEC 14496-12; display flags: 3GPP TS 26.245, 5.16).
struct Mp4Movie {
    double seconds = 0;            ///< play time; 0: unknown
    bool fragmented = false;       ///< its samples stand in fragments, not in the index
    std::uint64_t mediaBytes = 0;  ///< in all media data boxes together
    std::uint64_t timeScale = 1;   ///< units per second; never 0
    Mp4Field duration{};           ///< play time in that scale
    std::vector<Mp4Track> tracks{};
};

/// True when a track holds a stream of its own. Not so chapters and time codes, which the converter
/// adds behind the others.
[[nodiscard]] inline bool holdsStream(const Mp4Track& track) {
    return track.kind != Mp4TrackKind::Other && track.codec != "text";
}

}  // namespace reelvane
