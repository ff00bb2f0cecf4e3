#pragma once

#include <QTextEdit>

namespace reelvane {

/// Text to read and to select, shown as it stands: nothing in it is markup. It looks like a label,
/// but words too long for a line are broken, and text that is too tall scrolls.
class PlainTextView final : public QTextEdit {
public:
    PlainTextView(const QString& text, const QFont& font, QWidget* parent);

    /// How wide the text is when no line is broken but by its own line breaks.
    [[nodiscard]] int naturalWidth() const;
    /// Makes the view this wide and as tall as its text, though not taller than `tallest`.
    void fit(int width, int tallest);
};

}  // namespace reelvane
