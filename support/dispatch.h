#pragma once

#include "support/ports/dispatcher.h"

namespace reelvane {

class Vantor;

/// Hopping between the main thread and the background. All may be called from any thread.

/// Runs the work later on the main thread.
void dispatch_async_main(Vantor& vantor, Work block);
/// Runs the work now when on the main thread, else there, and waits for it.
void dispatch_sync_main(Vantor& vantor, const Work& block);
/// Runs the work on the main thread after the delay in seconds.
void dispatch_after_main(Vantor& vantor, float delay, Work block);
/// Runs the work later on a background thread.
void dispatch_async_back(Vantor& vantor, Work block);
/// Runs the work on a background thread and waits for it.
void dispatch_sync_back(Vantor& vantor, const Work& block);
/// Runs the work on a background thread after the delay in seconds.
void dispatch_after_back(Vantor& vantor, float delay, Work block);
/// Runs the work on a background thread and waits at most `timeout` seconds; true when that was not
/// enough (the work goes on).
[[nodiscard]] bool dispatch_sync_back_timeout(Vantor& vantor, Work block, float timeout);

}  // namespace reelvane
