#include "ui/slim_bar.h"

#include <algorithm>

#include <QPainter>
#include <QStyle>

#include "ui/colours.h"

namespace reelvane {
namespace {

constexpr float kGrooveStrength = 0.16F;

}  // namespace

SlimBar::SlimBar(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
}

void SlimBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto colours = palette();
    auto groove = colours.color(QPalette::Text);
    groove.setAlphaF(kGrooveStrength);
    const double rounding = height() / 2.0;
    painter.setBrush(groove);
    painter.drawRoundedRect(rect(), rounding, rounding);
    if (value() <= minimum()) return;
    const double share = double(value() - minimum()) / std::max(maximum() - minimum(), 1);
    const int length = std::max(static_cast<int>(share * width()), height());
    painter.setBrush(accent(colours));
    painter.drawRoundedRect(
        QStyle::visualRect(layoutDirection(), rect(), QRect(0, 0, length, height())), rounding,
        rounding);
}

}  // namespace reelvane
