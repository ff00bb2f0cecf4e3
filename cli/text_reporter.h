#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "cli/convert_reporter.h"

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

/// "Film.mkv: failed: Movie conversion failed because ...", on as many lines as the message has,
/// those after the first indented. An empty `what` is left out. `name` is printable.
[[nodiscard]] std::string errorText(std::string_view name, std::string_view what,
                                    std::string_view message);

/// "Warning: Movies/Film.mkv ended after ...", "Film.mkv: warning: ..." where the message does not
/// say of which file it speaks. One line; `name` is printable.
[[nodiscard]] std::string warningLine(std::string_view name, std::string_view message);

/// Why standard output takes nothing any more, by the errno of the write.
[[nodiscard]] std::string outputLostText(int error);

/// "3 files converted, 1 failed, 1 refused (1m 3s, 1.43 GB)": what there is.
[[nodiscard]] std::string summaryText(const ConvertSummary& summary);

/// The text broken at its gaps (one space, or two between parts that belong together) into lines of
/// at most `columns` where that can be, each with `indent` spaces before it.
[[nodiscard]] std::string wrapped(std::string_view text, std::string_view gap, std::size_t columns,
                                  std::size_t indent);

}  // namespace reelvane
