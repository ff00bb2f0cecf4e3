#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "media/mkv_file_info.h"

namespace reelvane {

struct ProbeOptions {
    bool heAACConvert = false;  ///< name HE-AAC streams "he-aac"
};

/// One video stream that is no cover art and whose codec was not refused.
struct VideoStreamFact {
    int index = 0;  ///< of the stream in the input
    std::string codec{};
    bool tenBit = false;                      ///< H.264 High 10
    std::string resolution{};                 ///< "1920x1080"; empty: none found
    std::optional<int> referenceFrames{};     ///< absent: the report has no count
    bool isEmpty = false;                     ///< it has no picture that ffmpeg could find
    bool isDefault = false;                   ///< the container says so
    bool namesColour = false;                 ///< colours, a range, HDR or Dolby Vision are named
    std::optional<int> dolbyVisionProfile{};  ///< of its configuration record, where it has one
    std::optional<int> packets{};             ///< how many were found near the beginning
};

/// What one report says. The record lacks what only the file system knows (path, name, size).
struct ProbeReport {
    MKVFileInfo record{};
    std::vector<VideoStreamFact> videoStreams{};     ///< in report order
    std::optional<std::string> refusedVideoCodec{};  ///< set: reading stopped there
};

/// Reads what "ffmpeg -i" printed. Text in, values out: no process, no file, no preference. What is
/// no report reads as an empty one.
[[nodiscard]] ProbeReport parseProbeReport(std::string_view text, const ProbeOptions& options);

/// Makes the record's picture that of the best of the report's video streams.
void choosePicture(ProbeReport& report);

/// The codecs that no MP4 can hold. Exact, case-sensitive names.
[[nodiscard]] bool isRefusedVideoCodec(std::string_view codec);

/// Whether the demuxer ("hls", or a list of names with commas) reads a text that names other files
/// and then opens those, so that a file dressed as a movie could reach anything on the machine.
[[nodiscard]] bool isPlaylistDemuxer(std::string_view demuxer);

/// The number of reference frames in what ffmpeg's "trace_headers" filter printed of an H.264
/// stream's parameter sets (max_num_ref_frames, ITU-T H.264 7.3.2.1.1). 0 when it printed none.
[[nodiscard]] int referenceFramesInTrace(std::string_view text);

}  // namespace reelvane
