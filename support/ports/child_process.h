#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

/// What to run. Arguments are passed byte for byte; they need not be UTF-8.
struct ProcessRequest {
    std::filesystem::path executable{};
    std::vector<std::string> arguments{};
    bool background = false;  ///< gives way to all else: lowest processor and disk priority
    std::stop_token stop{};   ///< for `run` alone: a request ends the child
    /// For `run` alone: what the child prints is data of a known size, such as a picture, and is
    /// kept whole.
    bool keepsAllOutput = false;
};

/// Told about one running child, on the main thread; never after its ChildProcess is destroyed.
class ProcessListener {
public:
    virtual ~ProcessListener() = default;

    /// A piece of standard output and standard error, which share one pipe.
    virtual void outputReceived(std::string_view bytes) = 0;

    /// Once, at the end. The status is the exit status, or the signal's number when one ended it.
    /// `remainingOutput` is what the pipe still held. The child may be destroyed in this call.
    virtual void taskFinished(int exitStatus, std::string_view remainingOutput) = 0;
};

/// A running child process; main thread only. It dies with this program, however that ends.
/// Destroying it terminates a child that still runs.
class ChildProcess {
public:
    virtual ~ChildProcess() = default;

    virtual void suspend() = 0;
    virtual void resume() = 0;
    /// Ends the child, suspended or not, and returns when it is gone. The listener is not told.
    virtual void terminate() = 0;
};

enum class LaunchError {
    None,
    NotFound,         ///< there is no such executable, or its interpreter is missing
    NotExecutable,    ///< it is there but the system refuses to run it
    NoResources,      ///< the system has no process or memory left
    ArgumentsTooLong  ///< the argument list is larger than the system takes
};

struct LaunchResult {
    std::unique_ptr<ChildProcess> child{};  ///< null: not launched, and `error` says why
    LaunchError error = LaunchError::None;
};

/// A child that has ended: what it printed (output and errors in one; of a flood the beginning and
/// the end, see BoundedText) and its status.
struct FinishedProcess {
    std::string output{};
    int exitStatus = 0;
};

struct RunResult {
    std::optional<FinishedProcess> finished{};  ///< absent: not launched, and `error` says why
    LaunchError error = LaunchError::None;
};

/// Starts child processes: standard input empty, environment and working directory inherited, a
/// process group of their own.
class ProcessLauncher {
public:
    virtual ~ProcessLauncher() = default;

    /// Main thread only; the listener must outlive the child. What the child leaves behind in its
    /// process group ends with it.
    [[nodiscard]] virtual LaunchResult launch(const ProcessRequest& request,
                                              ProcessListener& listener) = 0;

    /// Runs to completion and blocks the calling thread, which may be any. No output is too large
    /// for the child to end. What it leaves behind in its process group ends with it. A stopped
    /// child finishes too, with what it printed and a status that is not 0.
    [[nodiscard]] virtual RunResult run(const ProcessRequest& request) = 0;
};

}  // namespace reelvane
