#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "media/mkv_file_info.h"
#include "media/picture_choice.h"

namespace reelvane {

struct ProbeOptions {
    bool heAACConvert = false;  ///< name HE-AAC streams "he-aac"
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

/// The number of reference frames in what ffmpeg's "trace_headers" filter printed of an H.264
/// stream's parameter sets (max_num_ref_frames, ITU-T H.264 7.3.2.1.1). 0 when it printed none.
[[nodiscard]] int referenceFramesInTrace(std::string_view text);

}  // namespace reelvane
