#include "platform/posix_child.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "platform/posix_fork.h"

namespace reelvane {

namespace {

constexpr std::chrono::milliseconds kTerminationGrace(2000);
constexpr int kUnknownStatus = 255;

LaunchError launchError(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
        case ELOOP:
        case ENAMETOOLONG:
            return LaunchError::NotFound;
        case EAGAIN:
        case ENOMEM:
        case EMFILE:
        case ENFILE:
            return LaunchError::NoResources;
        case E2BIG:
            return LaunchError::ArgumentsTooLong;
        default:  // EACCES, ENOEXEC, EPERM and whatever else the system says against it
            return LaunchError::NotExecutable;
    }
}

// The system's own header declares the function without C linkage.
FileDescriptor openEndDescriptor(pid_t process) {
    return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
}

int waitForEnd(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) return kUnknownStatus;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
}

}  // namespace

PosixChild::PosixChild(pid_t process, FileDescriptor end, FileDescriptor output)
    : process_(process),
      end_(std::move(end)),
      output_(std::move(output)) {}

PosixChild::Start PosixChild::start(const ProcessRequest& request) {
    auto forked = forkAndExecute(request);
    if (forked.process > 0 && forked.error == 0) {
        auto end = openEndDescriptor(forked.process);
        if (end.isOpen()) {
            return {.child = PosixChild(forked.process, std::move(end), std::move(forked.output))};
        }
        forked.error = errno;
        ::kill(-forked.process, SIGKILL);
    }
    if (forked.process > 0) static_cast<void>(waitForEnd(forked.process));
    return {.error = launchError(forked.error)};
}

void PosixChild::signalGroup(int signal) const {
    ::kill(-process_, signal);
}

bool PosixChild::waitFor(std::chrono::milliseconds time) const {
    const auto deadline = std::chrono::steady_clock::now() + time;
    pollfd end{.fd = end_.get(), .events = POLLIN, .revents = 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        const int ready = ::poll(&end, 1, static_cast<int>(std::max<long>(left.count(), 0)));
        if (ready >= 0 || errno != EINTR) return ready > 0;
    }
}

int PosixChild::reap() const {
    // Not yet waited for, the child keeps the group's number from being given to others.
    signalGroup(SIGKILL);
    return waitForEnd(process_);
}

void PosixChild::terminate() const {
    signalGroup(SIGTERM);
    signalGroup(SIGCONT);  // a suspended process takes no other signal
    static_cast<void>(waitFor(kTerminationGrace));
    static_cast<void>(reap());
}

std::string PosixChild::takePendingOutput() const {
    int pending = 0;
    if (::ioctl(output_.get(), FIONREAD, &pending) < 0) return {};
    std::string output;
    while (output.size() < static_cast<std::size_t>(pending)) {
        const auto before = output.size();
        if (!readAvailable(output_.get(), output) || output.size() == before) break;
    }
    return output;
}

bool readAvailable(int descriptor, std::string& output) {
    std::array<char, 65536>
        buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
    const auto count = ::read(descriptor, buffer.data(), buffer.size());
    if (count > 0) output.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

}  // namespace reelvane
