#include "platform/posix_child.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace reelvane {

namespace {

constexpr std::chrono::milliseconds kTerminationGrace(2000);
constexpr int kUnknownStatus = 255;

constexpr int kFirstFree = 3;  // after the standard descriptors

constexpr int kLowestPriority = 19;
// The kernel's numbers: <linux/ioprio.h> names a parameter "class" and is C alone in newer kernels.
constexpr int kOneProcess = 1;
constexpr int kIdleDisk = 3 << 13;  // the class above the level

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

struct Pipe {
    FileDescriptor readEnd{};
    FileDescriptor writeEnd{};

    [[nodiscard]] bool isOpen() const { return readEnd.isOpen() && writeEnd.isOpen(); }
};

// Never one of the standard numbers, not even where this program was started without them: the
// child puts others there.
FileDescriptor aboveStandard(int descriptor) {
    if (descriptor < 0 || descriptor >= kFirstFree) return FileDescriptor(descriptor);
    const FileDescriptor low(descriptor);
    return FileDescriptor(::fcntl(low.get(), F_DUPFD_CLOEXEC, kFirstFree));
}

Pipe makePipe() {
    std::array<int, 2> ends = {-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) < 0) return {};
    return {.readEnd = aboveStandard(ends[0]), .writeEnd = aboveStandard(ends[1])};
}

/// All that the child needs, made before the fork.
struct Plan {
    const char* executable = nullptr;
    char* const* arguments = nullptr;
    pid_t parent = 0;
    bool background = false;
    int standardInput = -1;
    int output = -1;
    int failure = -1;  ///< takes the errno of a failed step; closed by a successful exec
};

// Our handlers must not run in the child, where they would write to what it shares with us: so they
// go before the mask is lifted. An ignored SIGPIPE would outlive exec.
void resetSignals() {
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction current = {};
        if (::sigaction(signal, nullptr, &current) != 0) continue;
        const bool ignored = current.sa_handler == SIG_IGN && signal != SIGPIPE;
        if (!ignored && current.sa_handler != SIG_DFL) ::sigaction(signal, &standard, nullptr);
    }
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Neither can fail for want of a right, and a child that cannot yield is still of use.
void giveWay() {
    ::setpriority(PRIO_PROCESS, 0, kLowestPriority);
    ::syscall(SYS_ioprio_set, kOneProcess, 0, kIdleDisk);
}

bool setUp(const Plan& plan) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // A parent that was gone before that call sends no signal any more.
    if (::getppid() != plan.parent) return false;
    if (::dup2(plan.standardInput, STDIN_FILENO) < 0) return false;
    if (::dup2(plan.output, STDOUT_FILENO) < 0) return false;
    if (::dup2(plan.output, STDERR_FILENO) < 0) return false;
    // What a library or our own parent left open without the flag. Older kernels lack the call.
    ::close_range(kFirstFree, ~0U, CLOSE_RANGE_CLOEXEC);
    resetSignals();
    if (plan.background) giveWay();
    return true;
}

// What another thread had locked when the process was copied stays locked in the copy, so these are
// plain system calls: no allocation, no destructor, no return.
[[noreturn]] void becomeExecutable(const Plan& plan) {
    if (setUp(plan)) ::execve(plan.executable, plan.arguments, environ);
    const int error = errno;
    // The pipe is empty, so these few bytes are never cut.
    const auto told = ::write(plan.failure, &error, sizeof error);
    ::_exit(told == sizeof error ? 127 : 126);
}

// posix_spawn cannot ask for the death signal. All signals are blocked until the child has dropped
// our handlers; it takes the mask along.
pid_t forkAndBecome(const Plan& plan) {
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t process = ::fork();
    if (process == 0) becomeExecutable(plan);
    const int error = errno;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return process;
}

std::vector<char*> argumentPointers(const std::string& executable,
                                    const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 2);
    // execve takes pointers to mutable text and does not change it.
    const auto add = [&](const std::string& text) {
        pointers.push_back(
            const_cast<char*>(text.c_str()));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    };
    add(executable);
    for (const auto& argument : arguments) add(argument);
    pointers.push_back(nullptr);
    return pointers;
}

/// A new process, to be waited for by the caller when there is one.
struct ForkResult {
    pid_t process = -1;       ///< -1: none was made
    int error = 0;            ///< an errno: why the executable does not run in it; 0: it runs
    FileDescriptor output{};  ///< where its standard output and error arrive; never blocks
};

ForkResult forkAndExecute(const ProcessRequest& request) {
    auto output = makePipe();
    auto failure = makePipe();
    const auto input = aboveStandard(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    if (!output.isOpen() || !failure.isOpen() || !input.isOpen()) {
        return {.error = errno};
    }
    ::fcntl(output.readEnd.get(), F_SETFL, O_NONBLOCK);

    const auto arguments = argumentPointers(request.executable.native(), request.arguments);
    const Plan plan{.executable = request.executable.c_str(),
                    .arguments = arguments.data(),
                    .parent = ::getpid(),
                    .background = request.background,
                    .standardInput = input.get(),
                    .output = output.writeEnd.get(),
                    .failure = failure.writeEnd.get()};
    ForkResult result{.process = forkAndBecome(plan)};
    if (result.process < 0) return {.error = errno};

    failure.writeEnd.reset();
    while (::read(failure.readEnd.get(), &result.error, sizeof result.error) < 0 &&
           errno == EINTR) {
    }
    result.output = std::move(output.readEnd);
    return result;
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
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): read fills it
    std::array<char, 65536> buffer;
    const auto count = ::read(descriptor, buffer.data(), buffer.size());
    if (count > 0) output.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

}  // namespace reelvane
