#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/stream_plan.h"
#include "mp4/mp4_box.h"
#include "mp4/mp4_movie.h"

namespace reelvane {

/// The fields to set so that players take a movie as they should: the first audio track enabled and
/// no other, all audio tracks in one alternate group, subtitle tracks in another and off unless
/// forced, forced ones with the display flags that Apple's players read. Video stays in group 0.
/// `forcedSubtitles` counts subtitle tracks in file order, from 0. Empty when all is well. Pure.
/// Fields: ISO/IEC 14496-12, 8.3.2 (tkhd); 3GPP TS 26.245, 5.16 (tx3g).
[[nodiscard]] std::vector<FieldPatch> trackFlagPatches(
    const Mp4Movie& movie, const std::set<std::size_t>& forcedSubtitles);

/// What an MP4 file can say of a source's language: three letters (ISO 639-2). They pass as they
/// are, "de" and "de-AT" become "ger"; empty for anything else.
[[nodiscard]] std::string mp4Language(std::string_view language);

/// The fields to set so that each track has its source's language, where MP4 can say it: the
/// converter loses two-letter codes, regions and the language of what it has filtered. Pure.
[[nodiscard]] std::vector<FieldPatch> languagePatches(const Mp4Movie& movie,
                                                      const std::vector<OutputTrack>& planned);

/// The languages that MP4 cannot say, each once.
[[nodiscard]] std::vector<std::string> lostLanguages(const std::vector<OutputTrack>& planned);

/// The titles of the source's tracks that are missing from an output: of ffmpeg's two writers the
/// one that makes most M4V files drops them. Each once, in the order of the output's tracks. Pure.
[[nodiscard]] std::vector<std::string> lostTitles(const std::vector<OutputTrack>& planned,
                                                  const Mp4Movie& movie);

/// Gives the output's picture the length that its source's edit list says, where that leaves the
/// end of its only part out: ffmpeg copies the picture up to a point behind that end. Empty:
/// nothing is to be set. Pure.
[[nodiscard]] std::vector<FieldPatch> trimPatches(const Mp4Movie& output,
                                                  const Mp4Track& sourcePicture);

/// True when some of the track's media is never played.
[[nodiscard]] bool isTrimmed(const Mp4Track& track);

}  // namespace reelvane
