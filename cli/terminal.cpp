#include "cli/terminal.h"

#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace reelvane {
namespace {

constexpr std::size_t kUsualColumns = 80;

std::optional<std::string> environment(const char* name) {
    const char* const value = std::getenv(name);
    if (value == nullptr) return std::nullopt;
    return value;
}

}  // namespace

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

}  // namespace reelvane
