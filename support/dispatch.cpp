#include "support/dispatch.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <future>
#include <memory>
#include <utility>

#include "support/logging.h"
#include "support/ports/child_process.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

Interval intervalOf(float seconds) {
    constexpr float kLongest = 1e9F;  // some thirty years; more would not fit into nanoseconds
    if (!(seconds > 0)) return Interval::zero();
    const auto delay = std::chrono::duration<float>(seconds < kLongest ? seconds : kLongest);
    return std::chrono::duration_cast<Interval>(delay);
}

/// Work that tells a future when it is over, and hands over what it threw.
struct AwaitedWork {
    explicit AwaitedWork(Work block)
        // Shared, because the waiting side may be gone when the work ends.
        : task(std::make_shared<std::packaged_task<void()>>(std::move(block))),
          ended(task->get_future()) {}
    [[nodiscard]] Work work() const {
        return [running = task] { (*running)(); };
    }

    std::shared_ptr<std::packaged_task<void()>> task;
    std::future<void> ended;
};

constexpr std::size_t kLargestArguments = 200000;  // in characters

}  // namespace

void dispatch_async_main(Vantor& vantor, Work block) {
    vantor.ports().dispatcher.asyncMain(std::move(block));
}

void dispatch_sync_main(Vantor& vantor, const Work& block) {
    auto& dispatcher = vantor.ports().dispatcher;
    if (dispatcher.isMainThread()) {
        block();
        return;
    }
    AwaitedWork awaited(block);
    dispatcher.asyncMain(awaited.work());
    awaited.ended.get();
}

void dispatch_after_main(Vantor& vantor, float delay, Work block) {
    vantor.ports().dispatcher.afterMain(intervalOf(delay), std::move(block));
}

void dispatch_async_back(Vantor& vantor, Work block) {
    vantor.ports().dispatcher.asyncBackground(std::move(block));
}

void dispatch_sync_back(Vantor& vantor, const Work& block) {
    AwaitedWork awaited(block);
    vantor.ports().dispatcher.asyncBackground(awaited.work());
    awaited.ended.get();
}

void dispatch_after_back(Vantor& vantor, float delay, Work block) {
    vantor.ports().dispatcher.afterBackground(intervalOf(delay), std::move(block));
}

bool dispatch_sync_back_timeout(Vantor& vantor, Work block, float timeout) {
    AwaitedWork awaited(std::move(block));
    vantor.ports().dispatcher.asyncBackground(awaited.work());
    if (awaited.ended.wait_for(intervalOf(timeout)) != std::future_status::ready) return true;
    awaited.ended.get();
    return false;
}

std::optional<std::string> runAsTaskWithTerminationStatus(ProcessLauncher& launcher,
                                                          const std::vector<std::string>& command,
                                                          int* status) {
    if (command.empty()) return std::nullopt;
    const ProcessRequest request{.executable = command.front(),
                                 .arguments = {command.begin() + 1, command.end()}};
    std::size_t length = 0;
    for (const auto& argument : request.arguments) length += Fennimar::characterCount(argument);
    if (length > kLargestArguments) {
        vn_log_level(LogError,
                     "Error: task argument size approaching or above limit, spawn will fail");
    }
    auto result = launcher.run(request);
    if (!result.finished) return std::nullopt;
    if (status != nullptr) *status = result.finished->exitStatus;
    if (!Fennimar::isValidUtf8(result.finished->output)) return std::nullopt;
    return std::move(result.finished->output);
}

std::optional<std::string> runAsTask(ProcessLauncher& launcher,
                                     const std::vector<std::string>& command) {
    return runAsTaskWithTerminationStatus(launcher, command, nullptr);
}

}  // namespace reelvane
