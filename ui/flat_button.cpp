#include "ui/flat_button.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/colours.h"

namespace reelvane {
namespace {

constexpr double kFocusWidth = 2;  // in points, as the rounding
constexpr double kFocusRounding = 4;

}  // namespace

FlatButton::FlatButton(QWidget* parent) : QToolButton(parent) {
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
}

void FlatButton::paintEvent(QPaintEvent* event) {
    QToolButton::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accent(palette()), kFocusWidth));
    const double half = kFocusWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), kFocusRounding,
                            kFocusRounding);
}

void FlatButton::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !event->isAutoRepeat()) {
        click();
    } else {
        QToolButton::keyPressEvent(event);
    }
}

}  // namespace reelvane
