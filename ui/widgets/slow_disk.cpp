#include "ui/widgets/slow_disk.h"

#include <utility>

namespace reelvane {
namespace {

constexpr int kPatienceMilliseconds = 400;

}  // namespace

SlowDisk::SlowDisk(std::function<void()> becameSlow) {
    patience_.setSingleShot(true);
    patience_.setInterval(kPatienceMilliseconds);
    QObject::connect(&patience_, &QTimer::timeout, &patience_,
                     [this, becameSlow = std::move(becameSlow)] {
                         slow_ = true;
                         becameSlow();
                     });
}

void SlowDisk::setAwaited(bool awaited) {
    if (!awaited) {
        patience_.stop();
        slow_ = false;
    } else if (!slow_ && !patience_.isActive()) {
        patience_.start();
    }
}

}  // namespace reelvane
