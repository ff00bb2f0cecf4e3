#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "mp4/mp4_box.h"
#include "mp4/mp4_movie.h"

namespace reelvane {

/// What a track is read against.
struct TrackContext {
    std::uint64_t timeScale = 1;  ///< of the movie header, never 0
    const MediaRanges& media;
};

struct TrackReading {
    std::optional<Mp4Track> track{};  ///< absent: `problem` says why
    std::string problem{};            ///< as in Mp4Reading
    bool uncheckable = false;         ///< as in Mp4Reading
};

/// Reads one "trak" box and checks its tables against the media data.
[[nodiscard]] TrackReading readTrack(const ByteSource& file, const Mp4Box& trak,
                                     const TrackContext& context);

/// Reads the edit list of a "trak" box.
[[nodiscard]] Mp4Edits readEdits(const ByteSource& file, const Mp4Box& trak);

}  // namespace reelvane
