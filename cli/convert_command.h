#pragma once

#include <functional>

#include "cli/arguments.h"

namespace reelvane {

class Console;
class StderrAlerts;
class Vantor;

/// The main loop, as `convert` needs it.
struct ConvertLoop {
    std::function<void(int exitStatus)> quit{};  ///< ends `run`; the last call decides
    std::function<int()> run{};                  ///< runs until `quit` and answers its status
};

/// Converts the files and answers the exit status. Runs the main loop until nothing is left, or
/// until somebody else ends it with a status above 1: then what is unfinished is removed. The
/// preferences of an unattended run have to be set before.
[[nodiscard]] int runConvert(Vantor& vantor, Console& console, StderrAlerts& alerts,
                             const ConvertLoop& loop, const ConvertRequest& request);

}  // namespace reelvane
