#include "platform/interruption.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

#include "support/signal_status.h"

namespace reelvane {
namespace {

// Then the main loop, which serves the signal, is taken for stuck. Longer than an orderly end
// takes.
constexpr unsigned kPatience = 12;  // seconds

constexpr auto kEndingSignals = std::to_array<int>({SIGINT, SIGTERM, SIGHUP});

// A signal handler takes no argument of ours, so it finds these here.
std::atomic<int> firstSignal = 0;
std::atomic<int> eventDescriptor = -1;
static_assert(std::atomic<int>::is_always_lock_free);  // else a handler must not touch them

void interrupt(int number) {
    const int error = errno;  // belongs to what was interrupted
    int none = 0;
    firstSignal.compare_exchange_strong(none, number);
    const std::uint64_t one = 1;
    // Fails only where the counter is full, and then the descriptor is readable.
    if (::write(eventDescriptor, &one, sizeof one) < 0) errno = 0;
    ::alarm(kPatience);
    errno = error;
}

void endAtLast(int /*alarm*/) {
    ::_exit(exitStatusOfSignal(firstSignal));
}

void setHandler(void (*handler)(int)) {
    for (const int signal : kEndingSignals) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) < 0 || action.sa_handler == SIG_IGN) continue;
        action = {};
        action.sa_handler = handler;
        ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace

Interruption::Interruption() : event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    eventDescriptor = event_.get();
    std::signal(SIGALRM, endAtLast);
    setHandler(interrupt);
}

int Interruption::signal() {
    return firstSignal;
}

void exitAtOnceOnSignals() {
    setHandler([](int number) { ::_exit(exitStatusOfSignal(number)); });
}

}  // namespace reelvane
