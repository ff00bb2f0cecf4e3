#pragma once

#include <QStyledItemDelegate>

namespace reelvane {

class JobListView;

/// Paints what lies behind the row widgets of the job list: selection, pointer and focus.
class RowGround final : public QStyledItemDelegate {
public:
    explicit RowGround(JobListView& list);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

private:
    JobListView& list_;
};

}  // namespace reelvane
