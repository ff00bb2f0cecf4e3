#pragma once

#include "support/ports/child_process.h"

namespace reelvane {

/// Starts child processes by fork and exec. What a launched child prints, and its end, arrive
/// through the default GLib main context. `run` needs no main loop.
class PosixProcessLauncher final : public ProcessLauncher {
public:
    /// Once `cancelDescriptor` (-1: none) can be read, and it has to stay so, a `run` ends its
    /// child and answers with what was printed until then and a status that is not 0; one that
    /// begins later does so at once. What was launched is not concerned.
    explicit PosixProcessLauncher(int cancelDescriptor = -1)
        : cancelDescriptor_(cancelDescriptor) {}

    [[nodiscard]] LaunchResult launch(const ProcessRequest& request,
                                      ProcessListener& listener) override;
    [[nodiscard]] RunResult run(const ProcessRequest& request) override;

private:
    int cancelDescriptor_;
};

}  // namespace reelvane
