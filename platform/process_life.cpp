#include "platform/process_life.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <future>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "support/make_string.h"

namespace reelvane {
namespace {

constexpr rlim_t kFilesNeeded = 64;
constexpr rlim_t kFilesWanted = 1024;

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

void prepareProcess() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        const bool isClosed = ::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF;
        // The lowest free number is this one: those below are open by now.
        if (isClosed && ::open("/dev/null", O_RDWR) < 0) break;
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

bool mayOpenEnoughFiles() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return true;
    if (limit.rlim_cur < kFilesWanted && limit.rlim_cur < limit.rlim_max) {
        limit.rlim_cur = std::min(kFilesWanted, limit.rlim_max);
        static_cast<void>(::setrlimit(RLIMIT_NOFILE, &limit));
    }
    return limit.rlim_cur >= kFilesNeeded;
}

bool areThreadsLeft(std::size_t wanted) {
    std::promise<void> tried;
    const auto until = tried.get_future().share();
    std::vector<std::thread> threads;
    while (threads.size() < wanted) {
        auto made = startThread([until] { until.wait(); });
        if (!made) break;
        threads.push_back(*std::move(made));
    }
    tried.set_value();
    for (auto& thread : threads) thread.join();
    return threads.size() == wanted;
}

std::optional<std::thread> startThread(Work work) {
    try {
        return std::thread(std::move(work));
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

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

void endWithin(std::chrono::seconds patience, int status) {
    auto waiting = startThread([patience, status] {
        std::this_thread::sleep_for(patience);
        ::_exit(status);
    });
    if (waiting) {
        waiting->detach();
    } else {
        // Without a thread the status is lost, but the end comes.
        std::signal(SIGALRM, SIG_DFL);
        ::alarm(static_cast<unsigned>(patience.count()));
    }
}

bool relaunch(const std::filesystem::path& executable) {
    posix_spawnattr_t attributes;
    if (::posix_spawnattr_init(&attributes) != 0) return false;
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    auto name = executable.native();
    const std::array<char*, 2> words{name.data(), nullptr};
    pid_t process = 0;
    const bool started =
        ::posix_spawn(&process, name.c_str(), nullptr, &attributes, words.data(), environ) == 0;
    ::posix_spawnattr_destroy(&attributes);
    return started;
}

}  // namespace reelvane
