#include "ui/jobs/job_list_accessible.h"

#include <algorithm>
#include <vector>

#include <QAccessibleWidget>

#include "ui/jobs/job_list_view.h"
#include "ui/jobs/job_row.h"

namespace reelvane {
namespace {

class AccessibleList final : public QAccessibleWidget {
public:
    explicit AccessibleList(JobListView& list)
        : QAccessibleWidget(&list, QAccessible::List),
          list_(list) {}

    [[nodiscard]] int childCount() const override { return static_cast<int>(rows().size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        const auto all = rows();
        if (index < 0 || index >= static_cast<int>(all.size())) return nullptr;
        return QAccessible::queryAccessibleInterface(all[static_cast<std::size_t>(index)]);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto all = rows();
        const auto found = std::ranges::find(all, child->object());
        return found == all.end() ? -1 : static_cast<int>(found - all.begin());
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        const auto index = list_.indexAt(list_.viewport()->mapFromGlobal(QPoint(x, y)));
        auto* const row = list_.rowOf(index);
        return row == nullptr ? nullptr : QAccessible::queryAccessibleInterface(row);
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        auto* const row = list_.hasFocus() ? list_.rowOf(list_.currentIndex()) : nullptr;
        return row == nullptr ? QAccessibleWidget::focusChild()
                              : QAccessible::queryAccessibleInterface(row);
    }

private:
    [[nodiscard]] std::vector<JobRow*> rows() const {
        auto rows = list_.rows().rows();
        std::ranges::sort(rows, {}, &JobRow::y);
        return rows;
    }

    JobListView& list_;
};

class AccessibleRow final : public QAccessibleWidget {
public:
    AccessibleRow(JobRow& row, JobListView& list)
        : QAccessibleWidget(&row, QAccessible::ListItem),
          row_(row),
          list_(list) {}

    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&list_);  // not what scrolls within it
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const auto* const job = row_.job();
        if (kind != QAccessible::Name || job == nullptr) return QAccessibleWidget::text(kind);
        return list_.indexOf(*job).data().toString();
    }
    [[nodiscard]] QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        const auto* const job = row_.job();
        if (job == nullptr) return state;
        const auto index = list_.indexOf(*job);
        state.selectable = true;
        state.extSelectable = true;
        state.focusable = true;
        state.selected = list_.selectionModel()->isSelected(index);
        state.focused = list_.hasFocus() && list_.currentIndex() == index;
        return state;
    }

private:
    JobRow& row_;
    JobListView& list_;
};

QAccessibleInterface* makeAccessibleJobs(const QString& /*className*/, QObject* object) {
    // Qt takes over what is made here.
    if (auto* const list = dynamic_cast<JobListView*>(object)) return new AccessibleList(*list);
    auto* const row = dynamic_cast<JobRow*>(object);
    if (row == nullptr) return nullptr;
    auto* const list = dynamic_cast<JobListView*>(row->parentWidget()->parentWidget());
    return list == nullptr ? nullptr : new AccessibleRow(*row, *list);
}

}  // namespace

void describeJobLists() {
    QAccessible::installFactory(makeAccessibleJobs);
}

}  // namespace reelvane
