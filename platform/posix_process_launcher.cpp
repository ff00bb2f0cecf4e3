#include "platform/posix_process_launcher.h"

#include <array>
#include <csignal>
#include <memory>
#include <poll.h>
#include <stop_token>
#include <string>
#include <sys/eventfd.h>
#include <utility>

#include "platform/glib_dispatcher.h"
#include "platform/posix_child.h"
#include "support/logging.h"
#include "support/posix_io.h"

namespace reelvane {

namespace {

/// A child whose output and end are told to a listener from the main loop.
class PosixChildProcess final : public ChildProcess {
public:
    PosixChildProcess(PosixChild child, ProcessListener& listener)
        : child_(std::move(child)),
          listener_(listener),
          outputSource_(makeReadableSource(child_.output(), [this] { receiveOutput(); })),
          endSource_(makeReadableSource(child_.endDescriptor(), [this] { finish(); })) {}
    ~PosixChildProcess() override { terminate(); }
    PosixChildProcess(const PosixChildProcess&) = delete;
    PosixChildProcess& operator=(const PosixChildProcess&) = delete;
    PosixChildProcess(PosixChildProcess&&) = delete;
    PosixChildProcess& operator=(PosixChildProcess&&) = delete;

    void suspend() override {
        if (running_) child_.signalGroup(SIGSTOP);
    }
    void resume() override {
        if (running_) child_.signalGroup(SIGCONT);
    }
    void terminate() override {
        if (!std::exchange(running_, false)) return;
        dropSources();
        child_.terminate();
    }

private:
    void dropSources() {
        outputSource_.reset();
        endSource_.reset();
    }

    void receiveOutput() {
        std::string output;
        if (!readAvailable(child_.output(), output)) outputSource_.reset();
        if (!output.empty()) listener_.outputReceived(output);  // may destroy this
    }

    void finish() {
        running_ = false;
        dropSources();
        const int status = child_.reap();
        const auto output = child_.takePendingOutput();
        listener_.taskFinished(status, output);  // may destroy this
    }

    PosixChild child_;
    ProcessListener& listener_;
    bool running_ = true;  ///< not yet waited for, so that its number is still its own
    GlibSource outputSource_;
    GlibSource endSource_;
};

/// A request to stop, as a descriptor that becomes readable and stays so.
class StopEvent {
public:
    explicit StopEvent(const std::stop_token& stop)
        : event_(stop.stop_possible() ? ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK) : -1),
          callback_(stop, Signal{event_.get()}) {}

    [[nodiscard]] int descriptor() const { return event_.get(); }

private:
    struct Signal {
        int event;
        void operator()() const { ::eventfd_write(event, 1); }
    };

    FileDescriptor event_;
    std::stop_callback<Signal> callback_;
};

/// The status of a run that was cancelled: as if SIGTERM had ended the child.
constexpr int kCancelledStatus = SIGTERM;

bool isReadable(int descriptor) {
    pollfd waited{.fd = descriptor, .events = POLLIN, .revents = 0};
    return ::poll(&waited, 1, 0) > 0;
}

/// Reads until the child has ended, which the end of its output alone does not say: it may close
/// its output and go on, and others may hold it open. False when the run was cancelled before,
/// which either of the two further descriptors says.
bool readUntilEnd(const PosixChild& child, int cancelDescriptor, int stopDescriptor,
                  BoundedText& printed) {
    std::array<pollfd, 4> waited = {
        pollfd{.fd = child.endDescriptor(), .events = POLLIN, .revents = 0},
        pollfd{.fd = child.output(), .events = POLLIN, .revents = 0},
        pollfd{.fd = cancelDescriptor, .events = POLLIN, .revents = 0},
        pollfd{.fd = stopDescriptor, .events = POLLIN, .revents = 0}};
    while (waited[0].revents == 0) {
        if (::poll(waited.data(), waited.size(), -1) < 0) {
            waited[0].revents = 0;
            continue;
        }
        std::string output;
        if (waited[1].revents != 0 && !readAvailable(child.output(), output)) waited[1].fd = -1;
        printed.append(output);
        const bool cancelled = waited[2].revents != 0 || waited[3].revents != 0;
        if (waited[0].revents == 0 && cancelled) return false;
    }
    return true;
}

}  // namespace

LaunchResult PosixProcessLauncher::launch(const ProcessRequest& request,
                                          ProcessListener& listener) {
    auto started = PosixChild::start(request);
    if (!started.child) return {.error = started.error};
    return {.child = std::make_unique<PosixChildProcess>(*std::move(started.child), listener)};
}

RunResult PosixProcessLauncher::run(const ProcessRequest& request) {
    FinishedProcess finished{.exitStatus = kCancelledStatus};
    const StopEvent stop(request.stop);
    if (isReadable(cancelDescriptor_) || isReadable(stop.descriptor())) {
        return {.finished = std::move(finished)};
    }
    auto started = PosixChild::start(request);
    if (!started.child) return {.error = started.error};
    const auto& child = *started.child;
    BoundedText printed(request.keepsAllOutput ? BoundedText::kUnbounded : BoundedText::kPart);
    if (readUntilEnd(child, cancelDescriptor_, stop.descriptor(), printed)) {
        finished.exitStatus = child.reap();
    } else {
        child.terminate();
    }
    printed.append(child.takePendingOutput());
    finished.output = printed.text();
    return {.finished = std::move(finished)};
}

}  // namespace reelvane
