#include "ui/elided_label.h"

#include <algorithm>

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>

#include "ui/colours.h"
#include "ui/qt_text.h"
#include "ui/quiet_label.h"

namespace reelvane {
namespace {

constexpr int kLeastCharacters = 6;

}  // namespace

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, Rank rank, QWidget* parent)
    : QLabel(parent),
      mode_(mode),
      rank_(rank) {
    setTextFormat(Qt::PlainText);
    setContentsMargins(kRoomForAccents);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QString ElidedLabel::line() const {
    auto line = text();
    return line.replace('\n', ' ');
}

QStringList ElidedLabel::lines(int width) const {
    const auto text = line();
    QTextLayout layout(text, font());
    QStringList lines;
    int told = 0;
    layout.beginLayout();
    while (lines.size() + 1 < mostLines_) {
        auto next = layout.createLine();
        if (!next.isValid()) break;
        next.setLineWidth(width);
        lines << text.mid(told, next.textLength());
        told += next.textLength();
    }
    layout.endLayout();
    if (told < text.size()) lines << fontMetrics().elidedText(text.mid(told), mode_, width);
    return lines;
}

void ElidedLabel::setElideMode(Qt::TextElideMode mode) {
    mode_ = mode;
    update();
}

void ElidedLabel::setMostLines(int count) {
    mostLines_ = count;
    setSizePolicy(QSizePolicy::Preferred, count > 1 ? QSizePolicy::Preferred : QSizePolicy::Fixed);
}

int ElidedLabel::heightForWidth(int width) const {
    return heightOf(std::max(lines(width).size(), qsizetype{1}));
}

int ElidedLabel::heightOf(qsizetype lines) const {
    return static_cast<int>(lines) * fontMetrics().height() + contentsMargins().top();
}

QSize ElidedLabel::sizeHint() const {
    const auto metrics = fontMetrics();
    return {metrics.horizontalAdvance(line()) + 1, heightOf(1)};
}

QSize ElidedLabel::minimumSizeHint() const {
    const auto metrics = fontMetrics();
    return {qMin(sizeHint().width(), kLeastCharacters * metrics.averageCharWidth()), heightOf(1)};
}

bool ElidedLabel::event(QEvent* event) {
    // Where all can be read the tool tip is left to what stands behind.
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() &&
        lines(contentsRect().width()).join(QString()) != line()) {
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
    const auto shown = lines(contentsRect().width());
    // The side is the window's, the order of the words the text's own.
    painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const auto side = QStyle::visualAlignment(layoutDirection(), alignment()) | Qt::AlignAbsolute;
    auto place = contentsRect();
    if (shown.size() > 1) place.setHeight(fontMetrics().height());
    for (const auto& each : shown) {
        painter.drawText(place, static_cast<int>(side) | Qt::TextSingleLine, each.trimmed());
        place.translate(0, fontMetrics().height());
    }
}

}  // namespace reelvane
