#pragma once

namespace reelvane {

/// What the process ends with. An interrupted run ends with its signal's status instead.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure =
    1;                                ///< some file was refused or failed, or could not be written
inline constexpr int kExitUsage = 2;  ///< the command line itself is wrong

}  // namespace reelvane
