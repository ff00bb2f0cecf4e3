#pragma once

#include <QProgressBar>
#include <QToolButton>

namespace reelvane {

/// A flat button that shows plainly when the keyboard is on it.
class RowButton final : public QToolButton {
public:
    explicit RowButton(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A slim progress bar that can be told from its ground in every theme, even when nothing is done.
class SlimBar final : public QProgressBar {
public:
    explicit SlimBar(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace reelvane
