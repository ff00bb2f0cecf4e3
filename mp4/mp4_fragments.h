#pragma once

#include <string>

#include "mp4/mp4_box.h"
#include "mp4/mp4_movie.h"

namespace reelvane {

/// Adds what the fragments of a file hold (ISO/IEC 14496-12, 8.8): the play time and the number of
/// samples of each track, and the play time of the movie; checks that their samples lie inside the
/// media data. `mvex` is the index's box that announces fragments. Answers the problem, as in
/// Mp4Reading, or an empty text.
[[nodiscard]] std::string readFragments(const ByteSource& file, const Mp4Box& mvex,
                                        const MediaRanges& media, Mp4Movie& movie);

}  // namespace reelvane
