#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace reelvane {

/// Standard output and standard error, and the live line at the bottom of a terminal. Every call
/// has written all when it returns, unless the run was cancelled: then nothing waits for a reader
/// that stalls. Of lines only what is printable goes out, whatever they were made of. Main thread
/// only.
class Console {
public:
    /// What may be shown on standard output.
    struct Abilities {
        bool liveLine = false;
        bool colours = false;
    };
    /// Reads from the two streams and the environment what they can do. A `cancelDescriptor` that
    /// can be read (-1: none) says that the run was cancelled.
    explicit Console(int cancelDescriptor = -1);
    /// With what they can do given.
    explicit Console(Abilities abilities) : abilities_(abilities) {}

    /// Called once, when standard output can be written no longer (its reader has gone, or its
    /// disk is full).
    void setClosedHandler(std::function<void()> handler) { closed_ = std::move(handler); }
    [[nodiscard]] bool isClosed() const { return closedBy_ != 0; }
    /// The errno of the write that failed; 0: none has.
    [[nodiscard]] int closedBy() const { return closedBy_; }

    [[nodiscard]] const Abilities& abilities() const { return abilities_; }
    [[nodiscard]] static std::size_t columns();
    /// Where lines of standard output are to be wrapped; without bounds where it is no terminal.
    [[nodiscard]] static std::size_t wrapColumns();

    /// A text for standard output, as it is.
    void write(std::string_view text);
    /// A line for standard output; the live line makes room and goes.
    void line(std::string_view text);
    /// A line for standard error. Works after standard output has been closed, too.
    void error(std::string_view text);
    /// Puts this text into the live line; nothing where there is none.
    void showLive(std::string_view text);
    /// Takes the live line away.
    void endLive();

private:
    Abilities abilities_;
    int cancelDescriptor_ = -1;
    std::function<void()> closed_;
    int closedBy_ = 0;
    bool isLive_ = false;
};

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

/// The columns that a printable text takes: East Asian wide characters and emoji take two, marks
/// that join the character before them none (Unicode, EastAsianWidth W and F, as GLib has it).
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// The text with its middle left out ("A long…e.mkv") so that it takes at most this many columns.
[[nodiscard]] std::string elidedMiddle(std::string_view text, std::size_t columns);

/// The text with spaces behind it up to this many columns.
[[nodiscard]] std::string padded(std::string text, std::size_t columns);

/// The text broken at its gaps (one space, or two between parts that belong together) into lines of
/// at most `columns` where that can be, each with `indent` spaces before it.
[[nodiscard]] std::string wrapped(std::string_view text, std::string_view gap, std::size_t columns,
                                  std::size_t indent);

}  // namespace reelvane
