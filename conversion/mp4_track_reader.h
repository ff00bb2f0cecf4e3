#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "conversion/mp4_box.h"
#include "conversion/mp4_movie.h"

namespace reelvane {

/// The content of one media data box, from the start of the file.
struct MediaRange {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// What a track is read against.
struct TrackContext {
    std::uint64_t timeScale = 1;          ///< of the movie header, never 0
    std::span<const MediaRange> media{};  ///< in file order
};

struct TrackReading {
    std::optional<Mp4Track> track{};  ///< absent: `problem` says why
    std::string problem{};            ///< as in Mp4Reading
};

/// Reads one "trak" box and checks its tables against the media data.
[[nodiscard]] TrackReading readTrack(const ByteSource& file, const Mp4Box& trak,
                                     const TrackContext& context);

}  // namespace reelvane
