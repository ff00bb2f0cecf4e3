#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

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
    std::vector<int> packets{};               ///< how many were found at each place looked at
    std::optional<std::uint64_t> promisedPictures{};  ///< by Matroska's statistics; absent: none
    std::optional<int> promisedSeconds{};             ///< likewise
};

/// Which of a movie's video streams may be its picture: a cover that nobody marked as one, an empty
/// track, a second small one must not win over the movie. The last of them is taken.
[[nodiscard]] std::vector<VideoStreamFact> likelyPictures(std::vector<VideoStreamFact> streams);

/// Whether the stream has moving pictures, as far as is known: it is no cover that nobody marked.
[[nodiscard]] bool isMovingPicture(const VideoStreamFact& stream);

/// Whether what is known does not tell yet, so that the streams' packets should be counted.
[[nodiscard]] bool areInDoubt(std::span<const VideoStreamFact> streams);

/// Where packets are counted, in seconds: a stream that fills the beginning alone is not the movie.
[[nodiscard]] std::vector<int> placesToCount(std::optional<int> runtimeSeconds);

/// What makes ffmpeg print a line for each of these streams' packets from that place on, "0, ..."
/// for the first stream and so on, until one of them has had some seconds' worth: the picture's
/// have come by then.
[[nodiscard]] std::vector<std::string> countArguments(const std::string& path,
                                                      std::span<const VideoStreamFact> streams,
                                                      int fromSecond);
/// Takes the numbers of one place from what that printed; nothing changes where there are none.
void takeCounts(std::string_view printed, std::vector<VideoStreamFact>& streams);

}  // namespace reelvane
