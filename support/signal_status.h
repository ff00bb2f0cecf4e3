#pragma once

namespace reelvane {

/// What a process that a signal interrupted ends with, as shells report it.
[[nodiscard]] constexpr int exitStatusOfSignal(int signal) {
    return 128 + signal;
}

}  // namespace reelvane
