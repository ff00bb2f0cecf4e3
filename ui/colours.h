#pragma once

#include <QColor>
#include <QPalette>

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

}  // namespace reelvane
