#pragma once

#include <optional>
#include <string>
#include <vector>

namespace reelvane {

/// The streams that an argument list maps, "0:1" or "[out]", in the order of the output's tracks.
[[nodiscard]] std::vector<std::string> mappedStreams(const std::vector<std::string>& arguments);

/// The movie's stream that each of them is made of; for "[out]" the one that goes into the filter.
/// Absent for a stream of another input.
[[nodiscard]] std::vector<std::optional<int>> sourceStreams(
    const std::vector<std::string>& arguments);

}  // namespace reelvane
