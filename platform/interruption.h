#pragma once

#include "support/file_descriptor.h"

namespace reelvane {

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

}  // namespace reelvane
