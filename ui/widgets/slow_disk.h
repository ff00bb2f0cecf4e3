#pragma once

#include <functional>

#include <QTimer>

namespace reelvane {

/// Tells of a disk once it has kept the user waiting for so long that he should know; most answer
/// before anybody could read that.
class SlowDisk {
public:
    /// `becameSlow` is called when the disk has become slow.
    explicit SlowDisk(std::function<void()> becameSlow);

    /// The disk is being asked, or has answered.
    void setAwaited(bool awaited);
    [[nodiscard]] bool isSlow() const { return slow_; }

private:
    QTimer patience_;
    bool slow_ = false;
};

}  // namespace reelvane
