#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace reelvane {

/// What decides how output is shown.
struct TerminalFacts {
    bool isTerminal = false;               ///< of the stream in question
    std::optional<std::string> term{};     ///< $TERM
    std::optional<std::string> noColor{};  ///< $NO_COLOR
};

/// A live line needs a terminal that can go back to the line's start and erase it.
[[nodiscard]] bool canShowLiveLine(const TerminalFacts& facts);
/// Colours as well, unless NO_COLOR is set to anything (https://no-color.org).
[[nodiscard]] bool canShowColours(const TerminalFacts& facts);

/// Reads the facts of an open file descriptor and of the environment.
[[nodiscard]] TerminalFacts terminalFacts(int descriptor);
/// The terminal's columns as they are now; 80 where it has none.
[[nodiscard]] std::size_t terminalColumns(int descriptor);

}  // namespace reelvane
