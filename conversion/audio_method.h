#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

class Translations;

/// How a track is treated. Codec names are compared exactly. A custom handling is returned as it is
/// stored and may lie outside the four methods: see audioMethodProblem.
[[nodiscard]] AudioMethod calculateConversionMethod(std::string_view codec, bool audioIsSurround,
                                                    const AudioSettings& settings);

/// The same for the chosen track of a movie; absent for a movie without sound, and for a track
/// whose codec ffmpeg does not know.
[[nodiscard]] std::optional<AudioMethod> mainAudioMethod(const MKVFileInfo& file,
                                                         std::size_t audioTrackIndex,
                                                         const AudioSettings& settings);

/// What a user is told whose preferences ask for a number that is none of the methods for this
/// track, in his language; empty when all is well.
[[nodiscard]] std::string audioMethodProblem(const Translations& translations,
                                             const MKVFileInfo& file, std::size_t audioTrackIndex,
                                             const AudioSettings& settings);

/// True when the entry names a surround track: it contains "5.1".
[[nodiscard]] bool isSurround(std::string_view audioEntry);

}  // namespace reelvane
