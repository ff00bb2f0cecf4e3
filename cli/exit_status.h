#pragma once

namespace reelvane {

/// What the process ends with. An interrupted run ends with 128 and the signal's number.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure =
    1;                                ///< some file was refused or failed, or could not be written
inline constexpr int kExitUsage = 2;  ///< the command line itself is wrong

[[nodiscard]] constexpr int exitStatusOfSignal(int signal) {
    return 128 + signal;
}

}  // namespace reelvane
