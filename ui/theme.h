#pragma once

#include <QPalette>

#include "support/observable.h"
#include "support/ports/desktop_appearance.h"

namespace reelvane {

/// The palette of the dark theme, for desktops that bring none of their own.
[[nodiscard]] QPalette darkPalette();

/// A palette like it in which disabled texts and marks can be seen: what Qt makes of a black or a
/// high-contrast scheme has them in the colour of their ground.
[[nodiscard]] QPalette withVisibleDisabled(QPalette palette);

/// What a desktop that wants dark (or light) programs needs, given a palette that is one or the
/// other already.
enum class PaletteChange { None, UseDark, UseOwn };
[[nodiscard]] PaletteChange paletteChange(bool prefersDark, bool isDark, bool isOurDark);

/// Follows the desktop between light and dark where Qt does not do so itself. Main thread, as long
/// as the application object.
class Theme {
public:
    explicit Theme(DesktopAppearance& appearance);

private:
    void follow();
    void takePalette();

    DesktopAppearance& appearance_;
    bool isOurDark_ = false;
    Subscription subscription_;
};

}  // namespace reelvane
