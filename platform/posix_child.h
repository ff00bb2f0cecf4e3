#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>

#include "support/ports/child_process.h"
#include "support/posix_io.h"

namespace reelvane {

/// A child process that this program started and has not yet waited for: standard input empty,
/// standard output and error in one pipe, a process group of its own, no other descriptor and no
/// signal setting of ours. The system kills it when the thread that started it ends.
class PosixChild {
public:
    struct Start;

    /// Any thread. Returns when the executable runs or could not be run.
    [[nodiscard]] static Start start(const ProcessRequest& request);

    /// The end of the pipe to read from; reading never blocks.
    [[nodiscard]] int output() const { return output_.get(); }
    /// Readable once the child has ended.
    [[nodiscard]] int endDescriptor() const { return end_.get(); }

    /// To the child and what it started in its group.
    void signalGroup(int signal) const;
    /// True when the child has ended, before or within this time.
    [[nodiscard]] bool waitFor(std::chrono::milliseconds time) const;
    /// Ends what the child left behind in its group, which nobody else would, and answers the
    /// child's exit status, or the number of the signal that ended it. To be called once, when the
    /// child has ended, and nothing but `takePendingOutput` after it.
    [[nodiscard]] int reap() const;
    /// SIGTERM, SIGCONT, and after two seconds SIGKILL; returns when the child is gone.
    void terminate() const;

    /// What the pipe holds now. A writer that the child left behind cannot draw this out.
    [[nodiscard]] std::string takePendingOutput() const;

private:
    PosixChild(pid_t process, FileDescriptor end, FileDescriptor output);

    pid_t process_;
    FileDescriptor end_;
    FileDescriptor output_;
};

struct PosixChild::Start {
    std::optional<PosixChild> child{};  ///< absent: not started, and `error` says why
    LaunchError error = LaunchError::None;
};

/// Reads once; appends to `output` and answers false at the pipe's end. Nothing there is no end.
[[nodiscard]] bool readAvailable(int descriptor, std::string& output);

}  // namespace reelvane
