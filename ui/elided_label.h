#pragma once

#include <QLabel>

namespace reelvane {

/// One line of plain text that gives way: what does not fit is elided, and told by the tool tip.
class ElidedLabel final : public QLabel {
public:
    /// Main text takes the colour that the palette has for it; quiet text is of second rank.
    enum class Rank { Main, Quiet };

    explicit ElidedLabel(Qt::TextElideMode mode, Rank rank, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// A file's name may hold line breaks; they would take the rest out of sight.
    [[nodiscard]] QString line() const;
    [[nodiscard]] QString elided() const;

    Qt::TextElideMode mode_;
    Rank rank_;
};

}  // namespace reelvane
