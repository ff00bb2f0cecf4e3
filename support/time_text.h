#pragma once

#include <chrono>
#include <string>

namespace reelvane {

/// "59s" for 59.9, "1m 0s" for 60, "2m 5s" for 125.4. What is no number reads "?".
[[nodiscard]] std::string formattedTimeFromTimeInterval(double seconds);

}  // namespace reelvane

namespace Fennimar {

/// Negative when `to` was earlier.
[[nodiscard]] inline double secondsBetween(std::chrono::steady_clock::time_point from,
                                           std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

}  // namespace Fennimar
