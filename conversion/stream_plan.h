#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

/// What becomes of one audio stream of the input.
struct PlannedAudio {
    std::size_t entry = 0;  ///< index into the record's audioTrackInformation
    AudioMethod method = AudioMethodCopy;
    std::string_view bitrate{};         ///< "128k"; empty when it is copied
    std::optional<int> samplingRate{};  ///< to be brought down to; absent: as it is
    std::optional<double> volume{};     ///< factor; absent: as it is
};

/// Which streams of an input go into the output, and as what. Decided here alone: the argument list
/// says it to the converter, and the track plan to the user.
struct StreamPlan {
    int video = 0;                            ///< always copied
    std::optional<PlannedAudio> mainAudio{};  ///< absent: a silent movie, which is picture alone
    std::optional<PlannedAudio> surround{};   ///< a second audio track, right after the main one
    std::vector<int> subtitles{};             ///< embedded text tracks, in report order
    bool externalSubtitle = false;            ///< the record's subtitle file is taken in
};

/// The plan for a record and the chosen audio track. Pure. The chosen audio method must be one of
/// the four: see audioMethodProblem.
[[nodiscard]] StreamPlan planStreams(const MKVFileInfo& file, std::size_t audioTrackIndex,
                                     const ConversionSettings& settings);

}  // namespace reelvane
