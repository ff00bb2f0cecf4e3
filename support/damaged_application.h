#pragma once

#include <filesystem>

#include "support/problem_reports.h"

namespace reelvane {

/// Whether a copy of the program lost its links when it was extracted: for each entry X of the
/// folder of private frameworks, "X/X without its extension" has to be a symbolic link. A folder
/// that is not there is whole.
[[nodiscard]] bool applicationIsDamaged(const std::filesystem::path& frameworks);

/// Tells the user of a damaged copy and ends the process with status 0. `main` calls it once, right
/// after it has made the Vantor object. Main thread only.
void runDamagedApplicationTest(Vantor& vantor, const EndProcess& end = endProcess);

}  // namespace reelvane
