#include "cli/console.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <glib.h>
#include <limits>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kEraseLine = "\r\x1b[K";
constexpr std::string_view kEllipsis = "…";
constexpr std::size_t kUsualColumns = 80;

enum class Written { All, Closed, GivenUp };

/// Waits for a slow reader, but not once the cancel descriptor can be read: what the stream does
/// not take at once is left out then.
Written writeUnlessCancelled(int descriptor, std::string_view text, int cancelDescriptor) {
    while (!text.empty()) {
        std::array<pollfd, 2> waited = {
            pollfd{.fd = descriptor, .events = POLLOUT, .revents = 0},
            pollfd{.fd = cancelDescriptor, .events = POLLIN, .revents = 0}};
        if (::poll(waited.data(), waited.size(), -1) < 0) continue;
        if (waited[0].revents == 0) return Written::GivenUp;
        // A pipe that is ready takes so much without blocking.
        const auto written =
            ::write(descriptor, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR && errno != EAGAIN) {
            return Written::Closed;
        }
    }
    return Written::All;
}

std::optional<std::string> environment(const char* name) {
    const char* const value = std::getenv(name);
    if (value == nullptr) return std::nullopt;
    return value;
}

std::size_t widthOf(char32_t character) {
    if (g_unichar_iszerowidth(character) != 0) return 0;
    return g_unichar_iswide(character) != 0 ? 2 : 1;
}

/// A character with the marks that join it: what must not be torn apart.
struct Cluster {
    std::string_view text{};
    std::size_t width = 0;
};

std::vector<Cluster> clusters(std::string_view text) {
    std::vector<Cluster> found;
    while (!text.empty()) {
        const auto character = decodeUtf8(text);
        const auto bytes = text.substr(0, character.length);
        const auto width = widthOf(character.value);
        if (width == 0 && !found.empty()) {
            const auto& last = found.back().text;
            found.back().text = {last.data(), last.size() + bytes.size()};
        } else {
            found.push_back({.text = bytes, .width = width});
        }
        text.remove_prefix(character.length);
    }
    return found;
}

}  // namespace

Console::Console(int cancelDescriptor) : cancelDescriptor_(cancelDescriptor) {
    const auto facts = terminalFacts(STDOUT_FILENO);
    abilities_ = {.liveLine = canShowLiveLine(facts), .colours = canShowColours(facts)};
}

std::size_t Console::columns() {
    return terminalColumns(STDOUT_FILENO);
}

std::size_t Console::wrapColumns() {
    constexpr std::size_t kFewest = 20;
    if (!terminalFacts(STDOUT_FILENO).isTerminal) return std::numeric_limits<std::size_t>::max();
    return std::max(columns(), kFewest);
}

void Console::write(std::string_view text) {
    if (isClosed()) return;
    if (writeUnlessCancelled(STDOUT_FILENO, text, cancelDescriptor_) != Written::Closed) return;
    closedBy_ = errno;
    if (closed_) closed_();
}

void Console::line(std::string_view text) {
    endLive();
    write(printableLines(text) + "\n");
}

void Console::error(std::string_view text) {
    endLive();
    writeUnlessCancelled(STDERR_FILENO, printableLines(text) + "\n", cancelDescriptor_);
}

void Console::showLive(std::string_view text) {
    if (!abilities_.liveLine) return;
    isLive_ = true;
    write(std::string(kEraseLine) + std::string(text));
}

void Console::endLive() {
    if (std::exchange(isLive_, false)) write(kEraseLine);
}

bool canShowLiveLine(const TerminalFacts& facts) {
    return facts.isTerminal && facts.term && !facts.term->empty() && *facts.term != "dumb";
}

bool canShowColours(const TerminalFacts& facts) {
    return canShowLiveLine(facts) && (!facts.noColor || facts.noColor->empty());
}

TerminalFacts terminalFacts(int descriptor) {
    return {.isTerminal = ::isatty(descriptor) == 1,
            .term = environment("TERM"),
            .noColor = environment("NO_COLOR")};
}

std::size_t terminalColumns(int descriptor) {
    winsize size{};
    const bool known = ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : kUsualColumns;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (const auto& cluster : clusters(text)) width += cluster.width;
    return width;
}

std::string elidedMiddle(std::string_view text, std::size_t columns) {
    if (displayWidth(text) <= columns) return std::string(text);
    if (columns == 0) return {};
    const auto parts = clusters(text);
    const auto room = columns - 1;  // beside the ellipsis
    std::size_t head = 0;
    std::size_t tail = parts.size();
    std::size_t headWidth = 0;
    std::size_t tailWidth = 0;
    // The end, with the extension and the number of an episode, says as much as the beginning.
    while (tail > 0 && tailWidth + parts[tail - 1].width <= room / 2) {
        tailWidth += parts[--tail].width;
    }
    while (head < tail && headWidth + parts[head].width + tailWidth <= room) {
        headWidth += parts[head++].width;
    }
    std::string result;
    for (std::size_t i = 0; i < head; ++i) result += parts[i].text;
    result += kEllipsis;
    for (std::size_t i = tail; i < parts.size(); ++i) result += parts[i].text;
    return result;
}

std::string padded(std::string text, std::size_t columns) {
    const auto width = displayWidth(text);
    if (width < columns) text.append(columns - width, ' ');
    return text;
}

std::string wrapped(std::string_view text, std::string_view gap, std::size_t columns,
                    std::size_t indent) {
    const std::string margin(indent, ' ');
    std::string result;
    std::string line;
    for (const auto piece : Fennimar::split(text, gap)) {
        const auto width = indent + displayWidth(line) + gap.size() + displayWidth(piece);
        if (!line.empty() && width > columns) {
            result += margin + line + "\n";
            line.clear();
        }
        if (!line.empty()) line += gap;
        line += piece;
    }
    return result + margin + line;
}

}  // namespace reelvane
