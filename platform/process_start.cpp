#include "platform/process_start.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <future>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace reelvane {
namespace {

constexpr rlim_t kFilesNeeded = 64;
constexpr rlim_t kFilesWanted = 1024;

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

}  // namespace reelvane
