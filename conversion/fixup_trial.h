#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "media/mkv_file_info.h"

namespace reelvane {

class ProcessLauncher;

/// The arguments of a one-second trial conversion that copies this AAC track. It writes to the real
/// output path, which the real run overwrites.
[[nodiscard]] std::vector<std::string> fixupTrialArguments(const MKVFileInfo& file,
                                                           int audioStreamIndex);

/// True when the converter asks for the "aac_adtstoasc" filter to copy this AAC track into an MP4.
/// Runs the trial and blocks for its length, about as long as one second of the movie takes.
[[nodiscard]] bool needFixup(ProcessLauncher& launcher, const std::filesystem::path& ffmpeg,
                             const MKVFileInfo& file, int audioStreamIndex);

}  // namespace reelvane
