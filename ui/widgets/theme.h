#pragma once

#include <QColor>
#include <QPalette>

#include "support/observable.h"
#include "support/ports/desktop_appearance.h"

namespace reelvane {

/// How far two colours stand apart, 1 to 21; text wants 4.5.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// Whether the palette is one of light text on dark windows.
[[nodiscard]] bool isDark(const QPalette& palette);
/// Whether it is one for people who need all the contrast that there is: black and white, where a
/// window has no other ground than its lists.
[[nodiscard]] bool isHighContrast(const QPalette& palette);

/// `share` of `over` (0 to 1) on top of `ground`.
[[nodiscard]] QColor mixed(const QColor& ground, const QColor& over, double share);

/// The ground of a list's row. It stays near the list's own, so that text, buttons and progress
/// bars keep their colours on it.
[[nodiscard]] QColor selectedGround(const QPalette& palette);
[[nodiscard]] QColor hoveredGround(const QPalette& palette);

/// The highlight, as strong as a thin line or a small area of it has to be on a list's rows.
[[nodiscard]] QColor accent(const QPalette& palette);

/// For text of second rank: as quiet as still reads well in a window and on a list's rows; in
/// a palette of high contrast it is not quiet.
[[nodiscard]] QColor quietText(const QPalette& palette);

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
