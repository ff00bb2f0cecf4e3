#pragma once

#include "conversion/mp4_box.h"
#include "conversion/mp4_movie.h"

namespace reelvane {

/// Adds what the fragments of a file hold (ISO/IEC 14496-12, 8.8): the play time and the number of
/// samples of each track, and the play time of the movie. `mvex` is the index's box that announces
/// fragments. False when one of them is damaged.
[[nodiscard]] bool readFragments(const ByteSource& file, const Mp4Box& mvex, Mp4Movie& movie);

}  // namespace reelvane
