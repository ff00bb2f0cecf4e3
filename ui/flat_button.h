#pragma once

#include <QToolButton>

namespace reelvane {

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
