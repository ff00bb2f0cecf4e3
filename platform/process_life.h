#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <thread>

#include "support/ports/dispatcher.h"
#include "support/posix_io.h"

namespace reelvane {

/// What has to be so before a program of ours opens anything; called first in `main`.
/// Standard descriptors that the caller closed lead to /dev/null: else the next file or event that
/// is opened takes their number, and what is printed goes into it. A reader that has gone and a
/// file that would grow beyond the limit are errors of the write, not the end of the process;
/// child processes inherit the latter.
void prepareProcess();

/// Whether the process may open as many files at a time as it needs; raises its own limit where it
/// can. GLib would end the process in the middle of something.
[[nodiscard]] bool mayOpenEnoughFiles();
/// What to say where it may not.
inline constexpr auto kTooFewFiles =
    "The system lets this program open too few files at a time. Please raise the limit, with "
    "\"ulimit -n 256\" for example, and try again.";

/// A thread that runs the work; absent when the system has none left (a limit for the user or the
/// container). Any thread.
[[nodiscard]] std::optional<std::thread> startThread(Work work);

/// Whether the system has so many threads left for this user at this moment. Any thread.
[[nodiscard]] bool areThreadsLeft(std::size_t wanted);

/// The first signal that asks the program to end (Ctrl-C, SIGTERM, SIGHUP), as a descriptor: it
/// becomes readable when the signal comes and stays so, whatever the main thread is busy with. A
/// main loop serves it by `makeReadableSource`. Signals that the caller wants to be ignored, as
/// nohup does, are left alone. The handlers stay to the program's end, so that a second signal does
/// not cut the cleaning short. A main loop that does not serve it for long is stuck, and the
/// program ends where it is, with the signal's status. One per program.
class Interruption {
public:
    Interruption();

    [[nodiscard]] int descriptor() const { return event_.get(); }
    /// The signal's number; 0 as long as none came.
    [[nodiscard]] static int signal();

private:
    FileDescriptor event_;
};

/// For what leaves nothing behind: the program ends where it is, with the signal's status.
void exitAtOnceOnSignals();

/// Bounds the rest of the program: should it not have ended by itself by then, because a disk or a
/// program does not answer, the process ends where it is, with this status.
void endWithin(std::chrono::seconds patience, int status);

/// Starts a program of its own session, which outlives this one, without arguments. False when it
/// could not be started.
[[nodiscard]] bool relaunch(const std::filesystem::path& executable);

}  // namespace reelvane
