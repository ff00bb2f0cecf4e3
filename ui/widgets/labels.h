#pragma once

#include <QLabel>
#include <QMargins>
#include <QTextEdit>
#include <QToolButton>

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

/// The dots of a capital umlaut stand higher than some fonts say; without this the topmost row of
/// pixels is cut off.
inline constexpr QMargins kRoomForAccents(0, 1, 0, 0);

/// Text of second rank in as many lines as it needs.
class QuietLabel final : public QLabel {
public:
    /// Elsewhere: a control beside it says the same of itself, so that screen readers pass over it.
    enum class Spoken { Here, Elsewhere };

    explicit QuietLabel(const QString& text, QWidget* parent = nullptr,
                        Spoken spoken = Spoken::Here);

    [[nodiscard]] Spoken spoken() const { return spoken_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Spoken spoken_;
};

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

/// A flat button that is a station of the tab key, shows plainly when the keyboard is on it, and is
/// pressed by Return as well as by Space.
class FlatButton : public QToolButton {
public:
    explicit FlatButton(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace reelvane
