#pragma once

#include <vector>

#include "mp4/field_patch.h"
#include "mp4/mp4_movie.h"

namespace reelvane {

/// Gives the output's picture the length that its source's edit list says, where that leaves the
/// end of its only part out: ffmpeg copies the picture up to a point behind that end. Empty:
/// nothing is to be set. Pure.
[[nodiscard]] std::vector<FieldPatch> trimPatches(const Mp4Movie& output,
                                                  const Mp4Track& sourcePicture);

/// True when some of the track's media is never played.
[[nodiscard]] bool isTrimmed(const Mp4Track& track);

}  // namespace reelvane
