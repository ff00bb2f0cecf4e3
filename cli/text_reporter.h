#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "cli/convert_reporter.h"

namespace reelvane {

/// "42% at 31x, 1m 3s left": what is known.
[[nodiscard]] std::string progressText(const ConvertProgress& progress);

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

/// One line of at most this many columns: counter, name (printable), bar, percentage, speed and
/// remaining time. On a narrow terminal the name is elided in its middle; then speed, counter,
/// remaining time and bar go, in this order.
[[nodiscard]] std::string progressLine(std::string_view name, const ConvertProgress& progress,
                                       std::size_t columns, bool coloured);

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

}  // namespace reelvane
