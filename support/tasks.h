#pragma once

#include <optional>
#include <string>
#include <vector>

namespace reelvane {

class ProcessLauncher;

/// Runs a command (the executable's path, then its arguments) to completion and answers what it
/// printed on standard output and standard error; absent when it could not be launched or printed
/// what is not UTF-8. `status`, when given, takes the exit status and stays untouched when nothing
/// was launched. Blocks; any thread.
[[nodiscard]] std::optional<std::string> runAsTaskWithTerminationStatus(
    ProcessLauncher& launcher, const std::vector<std::string>& command, int* status);

/// The same without the status.
[[nodiscard]] std::optional<std::string> runAsTask(ProcessLauncher& launcher,
                                                   const std::vector<std::string>& command);

}  // namespace reelvane
