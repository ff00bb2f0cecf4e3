#include "ui/folder_delegate.h"

#include <QApplication>
#include <QPainter>

#include "ui/colours.h"

namespace reelvane {
namespace {

int padding(const QFontMetrics& metrics) {
    return metrics.height() / 3;
}

void drawLine(QPainter& painter, const QStyleOptionViewItem& option, const QRect& line,
              const QString& text) {
    // The side is the window's, the order of the words the text's own.
    painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const auto side = QStyle::visualAlignment(option.direction, Qt::AlignLeading);
    painter.drawText(line, static_cast<int>(side | Qt::AlignAbsolute | Qt::AlignVCenter),
                     option.fontMetrics.elidedText(text, Qt::ElideMiddle, line.width()));
}

}  // namespace

void FolderDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    auto item = option;
    initStyleOption(&item, index);
    const auto name = item.text;
    item.text.clear();
    const auto* const style = item.widget != nullptr ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const auto inset = padding(item.fontMetrics);
    const auto height = item.fontMetrics.height();
    const QRect first(item.rect.left() + inset, item.rect.top() + inset,
                      item.rect.width() - 2 * inset, height);
    const bool selected = item.state.testFlag(QStyle::State_Selected);
    const auto main = selected ? QPalette::HighlightedText : QPalette::Text;
    const auto group =
        item.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    painter->save();
    painter->setPen(item.palette.color(group, main));
    drawLine(*painter, item, first, name);
    if (!selected) painter->setPen(quietText(item.palette));
    drawLine(*painter, item, first.translated(0, height), index.data(kPathRole).toString());
    painter->restore();
}

QSize FolderDelegate::sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const {
    return {0, 2 * (option.fontMetrics.height() + padding(option.fontMetrics))};
}

}  // namespace reelvane
