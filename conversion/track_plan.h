#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

class Translations;

/// What becomes of one track, for a reader and in his language.
struct TrackOutcome {
    enum class Kind { Video, Audio, Subtitle };
    enum class Fate { Copied, Converted, Added, LeftOut };
    Kind kind = Kind::Video;
    Fate fate = Fate::Copied;
    int count = 1;          ///< of the tracks that it stands for
    bool again = false;     ///< a second output track from the stream that comes just before
    std::string track{};    ///< "#1 eng dts 5.1", what is known; "#1 again"; a file's name
    std::string outcome{};  ///< "AAC stereo 128k"; of one that is left out, why
};

/// What a conversion makes of each track that the record knows: the video, the audio tracks in
/// report order but with the second output track just after the main one, the text tracks, the
/// other subtitles in one line, the external file. Pure; says what buildArguments makes of the same
/// inputs, with the same condition.
[[nodiscard]] std::vector<TrackOutcome> trackPlan(const Translations& translations,
                                                  const MKVFileInfo& file,
                                                  std::size_t audioTrackIndex,
                                                  const ConversionSettings& settings);

/// "2 audio, 1 subtitle track left out"; empty when all are taken.
[[nodiscard]] std::string leftOutText(const Translations& translations,
                                      const std::vector<TrackOutcome>& tracks);

/// "#0 h264 1920x1080: copied", "#1 eng dts 5.1 → AAC stereo 128k", "#1 again, copied as DTS 5.1".
[[nodiscard]] std::string trackLine(const TrackOutcome& outcome);

}  // namespace reelvane
