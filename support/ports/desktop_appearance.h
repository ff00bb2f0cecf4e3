#pragma once

#include <functional>

#include "support/observable.h"

namespace reelvane {

/// How the desktop wants its programs to look. Main thread only; nothing here waits, so the first
/// answers may be those of a plain desktop until the real ones have arrived.
class DesktopAppearance {
public:
    virtual ~DesktopAppearance() = default;
    [[nodiscard]] virtual bool prefersDark() const = 0;
    /// The user wants no animations.
    [[nodiscard]] virtual bool reducedMotion() const = 0;
    /// Told after every change of the answers.
    [[nodiscard]] virtual Subscription observe(std::function<void()> changed) = 0;
};

}  // namespace reelvane
