#pragma once

#include <chrono>

namespace reelvane {

/// Bounds the rest of the program: should it not have ended by itself by then, because a disk or a
/// program does not answer, the process ends where it is, with this status.
void endWithin(std::chrono::seconds patience, int status);

}  // namespace reelvane
