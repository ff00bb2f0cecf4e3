#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "media/mkv_file_info.h"

namespace reelvane {

/// What is wrong with choosing the audio track of this index, as one sentence for the user; absent
/// when the file has that track.
[[nodiscard]] std::optional<std::string> audioChoiceProblem(const MKVFileInfo& record,
                                                            std::size_t audioTrackIndex);

}  // namespace reelvane
