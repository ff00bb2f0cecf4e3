#pragma once

#include "support/ports/child_process.h"

namespace reelvane {

/// Starts child processes by fork and exec. What a launched child prints, and its end, arrive
/// through the default GLib main context. `run` needs no main loop.
class PosixProcessLauncher final : public ProcessLauncher {
public:
    [[nodiscard]] LaunchResult launch(const ProcessRequest& request,
                                      ProcessListener& listener) override;
    [[nodiscard]] RunResult run(const ProcessRequest& request) override;
};

}  // namespace reelvane
