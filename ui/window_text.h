#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace reelvane {

/// The line that says what a window is about.
[[nodiscard]] QLabel* makeHeading(const QString& text, QWidget* parent);
/// Text of any length in lines that are comfortable to read; the user may copy it.
[[nodiscard]] QLabel* makeParagraph(const QString& text, QWidget* parent);

}  // namespace reelvane
