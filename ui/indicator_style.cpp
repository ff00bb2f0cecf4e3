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

}  // namespace

void IndicatorStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton) return;
    if (!isDark(option->palette)) return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(outline(*option));
    painter->setBrush(Qt::NoBrush);
    const auto rect = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (element == PE_IndicatorCheckBox) {
        painter->drawRoundedRect(rect, kCornerRadius, kCornerRadius);
    } else {
        painter->drawEllipse(rect);
    }
    painter->restore();
}

}  // namespace reelvane
