#pragma once

#include <QLabel>

namespace reelvane {

/// Plain text in one line, or in a few, that gives way: what does not fit is elided, and told by
/// the tool tip.
class ElidedLabel final : public QLabel {
public:
    /// Main text takes the colour that the palette has for it; quiet text is of second rank.
    enum class Rank { Main, Quiet };

    explicit ElidedLabel(Qt::TextElideMode mode, Rank rank, QWidget* parent = nullptr);

    void setElideMode(Qt::TextElideMode mode);
    /// How many lines there may be: one, until this says something else.
    void setMostLines(int count);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return mostLines_ > 1; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// A file's name may hold line breaks; they would take the rest out of sight.
    [[nodiscard]] QString line() const;
    /// As they are shown; put together they are the text again, unless the last one is elided.
    [[nodiscard]] QStringList lines(int width) const;
    [[nodiscard]] int heightOf(qsizetype lines) const;

    Qt::TextElideMode mode_;
    Rank rank_;
    int mostLines_ = 1;
};

}  // namespace reelvane
