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

/// Which steps of a conversion are worth a line where lines stay: each full ten per cent, and one a
/// minute.
class ProgressSteps {
public:
    /// `elapsed` in seconds since the start. To be asked with growing values.
    [[nodiscard]] bool isDue(double percent, double elapsed);

private:
    int tens_ = 0;
    double told_ = 0;  // seconds
};

/// One line of at most this many columns: counter, name, bar, percentage, speed and remaining time.
/// On a narrow terminal the name is elided in its middle; then speed, counter, remaining time and
/// bar go, in this order.
[[nodiscard]] std::string progressLine(const ProgressFacts& facts, std::size_t columns,
                                       bool coloured);

}  // namespace reelvane
