#include "cli/console.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>
#include <utility>

#include "cli/terminal.h"

namespace reelvane {
namespace {

constexpr std::string_view kEraseLine = "\r\x1b[K";

/// False when the stream takes no more.
bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd ready{.fd = descriptor, .events = POLLOUT, .revents = 0};
            ::poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace

Console::Console() {
    const auto facts = terminalFacts(STDOUT_FILENO);
    abilities_ = {.liveLine = canShowLiveLine(facts), .colours = canShowColours(facts)};
}

std::size_t Console::columns() {
    return terminalColumns(STDOUT_FILENO);
}

void Console::write(std::string_view text) {
    if (isClosed_ || writeAll(STDOUT_FILENO, text)) return;
    isClosed_ = true;
    if (closed_) closed_();
}

void Console::line(std::string_view text) {
    endLive();
    write(std::string(text) + "\n");
}

void Console::error(std::string_view text) {
    endLive();
    writeAll(STDERR_FILENO, std::string(text) + "\n");
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
