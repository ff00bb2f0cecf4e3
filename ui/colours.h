#pragma once

#include <QColor>
#include <QPalette>

namespace reelvane {

/// How far two colours stand apart, 1 to 21; text wants 4.5.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// `share` of `over` (0 to 1) on top of `ground`.
[[nodiscard]] QColor mixed(const QColor& ground, const QColor& over, double share);

/// The ground of a list's row. It stays near the list's own, so that text, buttons and progress
/// bars keep their colours on it.
[[nodiscard]] QColor selectedGround(const QPalette& palette);
[[nodiscard]] QColor hoveredGround(const QPalette& palette);

/// The highlight, as strong as a thin line or a small area of it has to be on a list's rows.
[[nodiscard]] QColor accent(const QPalette& palette);

/// For text of second rank: as quiet as still reads well in a window and on a list's rows.
[[nodiscard]] QColor quietText(const QPalette& palette);

}  // namespace reelvane
