#pragma once

#include <cstddef>
#include <set>
#include <vector>

#include "mp4/field_patch.h"
#include "mp4/mp4_movie.h"

namespace reelvane {

/// The fields to set so that players take a movie as they should: the first audio track enabled and
/// no other, all audio tracks in one alternate group, subtitle tracks in another and off unless
/// forced, forced ones with the display flags that Apple's players read. Video stays in group 0.
/// `forcedSubtitles` counts subtitle tracks in file order, from 0. Empty when all is well. Pure.
/// Fields: ISO/IEC 14496-12, 8.3.2 (tkhd); 3GPP TS 26.245, 5.16 (tx3g).
[[nodiscard]] std::vector<FieldPatch> trackFlagPatches(
    const Mp4Movie& movie, const std::set<std::size_t>& forcedSubtitles);

}  // namespace reelvane
