#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "mp4/mp4_movie.h"

namespace reelvane {

struct Mp4Reading {
    std::optional<Mp4Movie> movie{};  ///< absent: not proven whole, and `problem` says why
    std::string problem{};            ///< one sentence without its subject: "has no index (moov)"
    bool uncheckable = false;         ///< the file may be whole all the same: nobody can tell
};

/// How many parts of one track the file puts together, of the picture or sound that has most of
/// them. Above 1 the movie was cut. 0 for a file without edit lists, or that is no MP4. Any thread.
[[nodiscard]] std::size_t partsOfMp4(const std::filesystem::path& file);

/// Reads a file's index and checks that the file is whole: every box lies inside its parent and the
/// file, there is an index with at least one track, the media data is not empty, and every chunk
/// that the index names starts inside media data that is large enough for all samples. Fragments
/// are read for their play time. Reads only the boxes it needs and never more than 64 KiB at a
/// time; hostile input meets the limit of ByteSource. Any thread.
[[nodiscard]] Mp4Reading readMp4(const std::filesystem::path& file);

}  // namespace reelvane
