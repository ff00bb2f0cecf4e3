#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

/// A second audio track that keeps the surround sound beside the converted main track.
struct SurroundTrack {
    std::size_t entry = 0;   ///< its source: index into the audio entries
    bool transcode = false;  ///< to six-channel AC-3; otherwise it is copied
};

/// The second track of a conversion with the compatible preset: the selected track itself when it
/// is surround AC-3 or DTS, else the first such track of the same language, AC-3 before DTS. Absent
/// when there is none or the preferences ask for none.
[[nodiscard]] std::optional<SurroundTrack> additionalSurroundTrack(
    std::span<const AudioEntry> entries, std::size_t selected, const ConversionSettings& settings);

}  // namespace reelvane
