#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "media/probe_report.h"

namespace reelvane {

/// Which of a movie's video streams may be its picture: a cover that nobody marked as one, an empty
/// track, a second small one must not win over the movie. The last of them is taken.
[[nodiscard]] std::vector<VideoStreamFact> likelyPictures(std::vector<VideoStreamFact> streams);

/// Whether the report alone does not tell, so that the streams' first packets should be counted.
[[nodiscard]] bool areInDoubt(std::span<const VideoStreamFact> streams);

/// What makes ffmpeg print a line for each of these streams' packets, "0, ..." for the first stream
/// and so on, until one of them has had some seconds' worth: the picture's have come by then.
[[nodiscard]] std::vector<std::string> countArguments(const std::string& path,
                                                      std::span<const VideoStreamFact> streams);
/// Takes the numbers from what that printed; nothing changes where there are none.
void takeCounts(std::string_view printed, std::vector<VideoStreamFact>& streams);

}  // namespace reelvane
