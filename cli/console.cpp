#include "cli/console.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <limits>
#include <poll.h>
#include <unistd.h>
#include <utility>

#include "cli/terminal.h"
#include "support/utf8.h"

namespace reelvane {
namespace {

constexpr std::string_view kEraseLine = "\r\x1b[K";

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

}  // namespace reelvane
