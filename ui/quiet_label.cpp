#include "ui/quiet_label.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QStyle>

#include "ui/colours.h"

namespace reelvane {
namespace {

QAccessibleInterface* makeAccessibleLabel(const QString& /*className*/, QObject* object) {
    auto* const label = dynamic_cast<QuietLabel*>(object);
    if (label == nullptr || label->spoken() == QuietLabel::Spoken::Here) return nullptr;
    return new QAccessibleWidget(label, QAccessible::Client);
}

}  // namespace

QuietLabel::QuietLabel(const QString& text, QWidget* parent, Spoken spoken)
    : QLabel(parent),
      spoken_(spoken) {
    QAccessible::installFactory(makeAccessibleLabel);
    setText(text);  // not before: a text that changes is told at once by what it is then
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
