#pragma once

#include <string>
#include <string_view>

#include "conversion/conversion_settings.h"

namespace reelvane {

/// How a track is treated. Codec names are compared exactly. A custom handling is returned as it is
/// stored and may lie outside the four methods: see isAudioMethod.
[[nodiscard]] AudioMethod calculateConversionMethod(std::string_view codec, bool audioIsSurround,
                                                    const AudioSettings& settings);

[[nodiscard]] bool isAudioMethod(int value);
/// What a user is told whose preferences ask for a number that is none of the methods.
[[nodiscard]] std::string invalidAudioMethodText(std::string_view codec, int value);

/// True when the entry names a surround track: it contains "5.1".
[[nodiscard]] bool isSurround(std::string_view audioEntry);

}  // namespace reelvane
