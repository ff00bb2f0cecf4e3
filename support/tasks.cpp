#include "support/tasks.h"

#include <cstddef>
#include <utility>

#include "support/logging.h"
#include "support/ports/child_process.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::size_t kLargestArguments = 200000;  // in characters

}  // namespace

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
