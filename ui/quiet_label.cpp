#include "ui/quiet_label.h"

#include <QPainter>
#include <QStyle>

#include "ui/colours.h"

namespace reelvane {

QuietLabel::QuietLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setContentsMargins(kRoomForAccents);
    setAlignment(Qt::AlignLeading | Qt::AlignTop);
}

void QuietLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const auto colours = palette();
    painter.setPen(isEnabled() ? quietText(colours) : colours.color(foregroundRole()));
    // The side is the window's, the order of the words the text's own.
    painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const auto side = QStyle::visualAlignment(layoutDirection(), alignment()) | Qt::AlignAbsolute;
    painter.drawText(contentsRect(), static_cast<int>(side) | Qt::TextWordWrap, text());
}

}  // namespace reelvane
