#pragma once

#include <sys/types.h>

#include "support/file_descriptor.h"
#include "support/ports/child_process.h"

namespace reelvane {

/// A new process, to be waited for by the caller when there is one.
struct ForkResult {
    pid_t process = -1;       ///< -1: none was made
    int error = 0;            ///< an errno: why the executable does not run in it; 0: it runs
    FileDescriptor output{};  ///< where its standard output and error arrive; never blocks
};

/// Forks and executes. Any thread. See PosixChild for how the process is set up.
[[nodiscard]] ForkResult forkAndExecute(const ProcessRequest& request);

}  // namespace reelvane
