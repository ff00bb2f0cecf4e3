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
    std::string codec{};
    bool tenBit = false;  ///< H.264 High 10
};

/// What one report says. The record lacks what only the file system knows (path, name, size).
struct ProbeReport {
    MKVFileInfo record{};
    std::vector<VideoStreamFact> videoStreams{};     ///< in report order
    std::optional<std::string> refusedVideoCodec{};  ///< set: reading stopped there
};

/// Reads what "ffmpeg -i" printed. Text in, values out: no process, no file, no preference.
/// Text that is not UTF-8 reads as an empty report. Throws std::out_of_range on a malformed line,
/// such as a duration line without a bitrate.
[[nodiscard]] ProbeReport parseProbeReport(std::string_view text, const ProbeOptions& options);

/// The codecs that no MP4 can hold. Exact, case-sensitive names.
[[nodiscard]] bool isRefusedVideoCodec(std::string_view codec);

/// Whether the demuxer ("hls", or a list of names with commas) reads a text that names other files
/// and then opens those, so that a file dressed as a movie could reach anything on the machine.
[[nodiscard]] bool isPlaylistDemuxer(std::string_view demuxer);

/// The number of reference frames in what ffmpeg's "trace_headers" filter printed of an H.264
/// stream's parameter sets (max_num_ref_frames, ITU-T H.264 7.3.2.1.1). 0 when it printed none.
[[nodiscard]] int referenceFramesInTrace(std::string_view text);

}  // namespace reelvane
