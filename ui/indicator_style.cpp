#include "ui/indicator_style.h"

#include <QPainter>
#include <QStyleOption>

#include "ui/colours.h"

namespace reelvane {
namespace {

constexpr qreal kCornerRadius = 2;

QColor outline(const QStyleOption& option) {
    const auto group =
        option.state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled;
    auto colour = option.palette.color(group, QPalette::WindowText);
    colour.setAlphaF(0.55F);  // 3 to 1 against the window
    return colour;
}

bool isIndicator(QStyle::PrimitiveElement element) {
    return element == QStyle::PE_IndicatorCheckBox || element == QStyle::PE_IndicatorRadioButton;
}

/// Where the style marks a button itself, in the colour of the focus.
bool isMarked(const QStyleOption& option) {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    return option.state.testFlag(QStyle::State_HasFocus) ||
           (button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton));
}

bool needsOutline(QStyle::PrimitiveElement element, const QStyleOption& option) {
    if (isIndicator(element)) return isDark(option.palette);
    return element == QStyle::PE_PanelButtonCommand && isHighContrast(option.palette) &&
           !isMarked(option);
}

}  // namespace

void IndicatorStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!needsOutline(element, *option)) return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(outline(*option));
    painter->setBrush(Qt::NoBrush);
    const auto rect = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (element == PE_IndicatorRadioButton) {
        painter->drawEllipse(rect);
    } else {
        painter->drawRoundedRect(rect, kCornerRadius, kCornerRadius);
    }
    painter->restore();
}

}  // namespace reelvane
