#pragma once

#include <cstddef>
#include <optional>
#include <thread>

#include "support/ports/dispatcher.h"

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

}  // namespace reelvane
