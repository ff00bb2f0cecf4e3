#pragma once

#include <filesystem>

namespace reelvane {

/// Starts a program of its own session, which outlives this one, without arguments. False when it
/// could not be started.
[[nodiscard]] bool relaunch(const std::filesystem::path& executable);

}  // namespace reelvane
