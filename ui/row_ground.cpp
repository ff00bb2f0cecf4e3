#include "ui/row_ground.h"

#include <QPainter>

#include "ui/colours.h"
#include "ui/job_list_view.h"

namespace reelvane {
namespace {

constexpr int kInset = 2;
constexpr double kRounding = 6;
constexpr double kFocusWidth = 2;
constexpr float kLineStrength = 0.12F;

}  // namespace

RowGround::RowGround(JobListView& list) : QStyledItemDelegate(&list), list_(list) {}

QSize RowGround::sizeHint(const QStyleOptionViewItem& /*option*/,
                          const QModelIndex& /*index*/) const {
    return {1, list_.rows().rowHeight()};  // as wide as the list
}

void RowGround::paint(QPainter* painter, const QStyleOptionViewItem& option,
                      const QModelIndex& index) const {
    const auto& palette = option.palette;
    const bool selected = (option.state & QStyle::State_Selected) != 0;
    const auto* const row = list_.rowOf(index);
    const bool hovered = row != nullptr && row->underMouse();
    painter->save();
    auto line = palette.color(QPalette::Text);
    line.setAlphaF(kLineStrength);
    const auto side = 2 * kInset;
    painter->setPen(line);
    painter->drawLine(option.rect.bottomLeft() + QPoint(side, 0),
                      option.rect.bottomRight() - QPoint(side, 0));
    painter->setRenderHint(QPainter::Antialiasing);
    const auto shape = QRectF(option.rect).adjusted(kInset, kInset, -kInset, -kInset - 1);
    if (selected || hovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(selected ? selectedGround(palette) : hoveredGround(palette));
        painter->drawRoundedRect(shape, kRounding, kRounding);
    }
    const bool focused = list_.currentIndex() == index && list_.hasFocus();
    if (focused) {
        const double half = kFocusWidth / 2;
        painter->setPen(QPen(accent(palette), kFocusWidth));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(shape.adjusted(half, half, -half, -half), kRounding - half,
                                 kRounding - half);
    }
    painter->restore();
}

}  // namespace reelvane
