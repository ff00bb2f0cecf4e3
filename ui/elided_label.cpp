#include "ui/elided_label.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include "ui/colours.h"
#include "ui/qt_text.h"

namespace reelvane {
namespace {

constexpr int kLeastCharacters = 6;

}  // namespace

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, Rank rank, QWidget* parent)
    : QLabel(parent),
      mode_(mode),
      rank_(rank) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QString ElidedLabel::line() const {
    auto line = text();
    return line.replace('\n', ' ');
}

QString ElidedLabel::elided() const {
    return fontMetrics().elidedText(line(), mode_, contentsRect().width());
}

QSize ElidedLabel::sizeHint() const {
    const auto metrics = fontMetrics();
    return {metrics.horizontalAdvance(line()) + 1, metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    const auto metrics = fontMetrics();
    return {qMin(sizeHint().width(), kLeastCharacters * metrics.averageCharWidth()),
            metrics.height()};
}

bool ElidedLabel::event(QEvent* event) {
    // Where all can be read the tool tip is left to what stands behind.
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && elided() != line()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), toToolTip(text()), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const auto colours = palette();
    painter.setPen(rank_ == Rank::Quiet && isEnabled() ? quietText(colours)
                                                       : colours.color(foregroundRole()));
    const auto shown = elided();
    // The side is the window's, the order of the words the text's own.
    painter.setLayoutDirection(shown.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const auto side = QStyle::visualAlignment(layoutDirection(), alignment()) | Qt::AlignAbsolute;
    painter.drawText(contentsRect(), static_cast<int>(side) | Qt::TextSingleLine, shown);
}

}  // namespace reelvane
