#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/observable.h"
#include "support/ports/dispatcher.h"

namespace reelvane {

class ProcessLauncher;
class Vantor;

// Hopping between the main thread and the background. All may be called from any thread.

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

/// Runs a command (the executable's path, then its arguments) to completion and answers what it
/// printed on standard output and standard error; absent when it could not be launched or printed
/// what is not UTF-8. `status`, when given, takes the exit status and stays untouched when nothing
/// was launched. Blocks; any thread.
[[nodiscard]] std::optional<std::string> runAsTaskWithTerminationStatus(
    ProcessLauncher& launcher, const std::vector<std::string>& command, int* status);

/// The same without the status.
[[nodiscard]] std::optional<std::string> runAsTask(ProcessLauncher& launcher,
                                                   const std::vector<std::string>& command);

/// Lets one at a time do what would slow the others down. Main thread only.
class Turns {
public:
    /// Calls `begin` when all that came before have ended: at once where nobody is there. The turn,
    /// or the place in the queue, ends with the subscription.
    [[nodiscard]] Subscription take(std::function<void()> begin) {
        const auto number = next_++;
        waiting_->emplace(number, begin);
        Subscription turn([list = std::weak_ptr(waiting_), number] {
            if (const auto waiting = list.lock()) end(*waiting, number);
        });
        if (waiting_->size() == 1) begin();
        return turn;
    }
    /// Nobody has a turn or waits for one.
    [[nodiscard]] bool isIdle() const { return waiting_->empty(); }

private:
    using Waiting = std::map<std::uint64_t, std::function<void()>>;

    static void end(Waiting& waiting, std::uint64_t number) {
        const bool hadTurn = waiting.begin()->first == number;
        waiting.erase(number);
        if (!hadTurn || waiting.empty()) return;
        const auto begin = waiting.begin()->second;  // it may end its own turn
        begin();
    }

    // Shared only so that a subscription that outlives this object can tell.
    std::shared_ptr<Waiting> waiting_ = std::make_shared<Waiting>();
    std::uint64_t next_ = 0;
};

}  // namespace reelvane
