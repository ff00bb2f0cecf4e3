#pragma once

#include <optional>

namespace reelvane {

/// The program's icon in a dock or a task bar. Main thread only; nothing here waits. Where no dock
/// listens nothing happens.
class LauncherEntry {
public:
    virtual ~LauncherEntry() = default;
    /// How far the work is, from 0 to 1. Absent: no progress is shown.
    virtual void setProgress(std::optional<double> fraction) = 0;
};

}  // namespace reelvane
