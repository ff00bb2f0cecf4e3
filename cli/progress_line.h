#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace reelvane {

/// How far one conversion has come.
struct ProgressFacts {
    std::string name{};                 ///< the file's, printable
    double percent = 0;                 ///< 0 to 100
    std::optional<double> speed{};      ///< play time written per second; absent: not known yet
    std::optional<double> remaining{};  ///< seconds; absent: not known yet
    std::size_t number = 1;             ///< of this file
    std::size_t files = 1;              ///< in this run
};

/// "42% at 31x, 1m 3s left": what is known.
[[nodiscard]] std::string progressText(const ProgressFacts& facts);

/// One line of at most this many columns: name, bar, percentage, speed and remaining time. On a
/// narrow terminal the bar goes first, then the speed; the name is elided in its middle.
[[nodiscard]] std::string progressLine(const ProgressFacts& facts, std::size_t columns,
                                       bool coloured);

}  // namespace reelvane
