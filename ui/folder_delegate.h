#pragma once

#include <QStyledItemDelegate>

namespace reelvane {

/// Draws a saved folder: its name, and below it the path, which gives way in the middle. The name
/// is the item's text.
class FolderDelegate final : public QStyledItemDelegate {
public:
    static constexpr int kPathRole = Qt::UserRole;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
};

}  // namespace reelvane
