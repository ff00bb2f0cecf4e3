#pragma once

#include <string>
#include <vector>

#include "media/mkv_file_info.h"
#include "mp4/mp4_movie.h"

namespace reelvane {

/// The titles of the source's tracks that are missing from an output: of ffmpeg's two writers the
/// one that makes most M4V files drops them. Each once, in the order of the output's tracks. Pure.
[[nodiscard]] std::vector<std::string> lostTitles(const MKVFileInfo& record,
                                                  const std::vector<std::string>& arguments,
                                                  const Mp4Movie& movie);

}  // namespace reelvane
