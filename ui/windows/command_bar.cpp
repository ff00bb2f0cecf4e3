#include "ui/windows/command_bar.h"

#include <algorithm>

#include <QEvent>
#include <QStyle>

#include "ui/widgets/labels.h"

namespace reelvane {

CommandBar::CommandBar(QWidget* parent) : QToolBar(parent) {
    setMovable(false);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    fitIcons();
}

void CommandBar::addCommand(QAction& action) {
    // Qt's own button for an action is out of the keyboard's reach.
    auto* const button = new FlatButton(this);
    button->setDefaultAction(&action);
    button->setIconSize(iconSize());
    button->setToolButtonStyle(toolButtonStyle());
    connect(this, &QToolBar::iconSizeChanged, button, &QToolButton::setIconSize);
    connect(this, &QToolBar::toolButtonStyleChanged, button, &QToolButton::setToolButtonStyle);
    addWidget(button);
}

void CommandBar::addSpace() {
    auto* const space = new QWidget(this);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(space);
}

bool CommandBar::event(QEvent* event) {
    const bool handled = QToolBar::event(event);
    // The latter: a command has another name now, or another font.
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitIcons();
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest) fitTexts();
    return handled;
}

/// The style's size suits ordinary fonts; beside large letters it would look lost.
void CommandBar::fitIcons() {
    const int side = std::max(style()->pixelMetric(QStyle::PM_ToolBarIconSize, nullptr, this),
                              fontMetrics().height() * 3 / 2);
    setIconSize({side, side});
}

void CommandBar::fitTexts() {
    const int needed = sizeHint().width();
    if (toolButtonStyle() == Qt::ToolButtonTextBesideIcon) {
        roomForTexts_ = needed;
    } else {
        setMinimumWidth(needed);
    }
    const auto style =
        width() < roomForTexts_ ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon;
    if (style != toolButtonStyle()) setToolButtonStyle(style);
}

}  // namespace reelvane
