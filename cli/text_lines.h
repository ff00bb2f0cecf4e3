#pragma once

#include <string>
#include <string_view>

#include "cli/convert_reporter.h"

namespace reelvane {

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
