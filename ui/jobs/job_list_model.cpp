#include "ui/jobs/job_list_model.h"

#include <algorithm>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QItemSelection>

#include "ui/jobs/job_list_view.h"
#include "ui/jobs/job_row.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

QString whereFromAndTo(const MKVFileInfo& record) {
    auto from = JobListModel::tr("From %1").arg(displayPath(record.fileURL));
    if (!record.destinationURL) return from;
    return from + '\n' + JobListModel::tr("To %1").arg(displayPath(*record.destinationURL));
}

}  // namespace

QString spokenText(const ConversionJob& job) {
    return JobListModel::tr("%1, %2").arg(toQString(job.fileInfo().fileName),
                                          toQString(job.stateInfoString()));
}

JobListModel::JobListModel(JobQueue& queue, QObject* parent)
    : QAbstractListModel(parent),
      queue_(queue),
      subscription_(
          queue.observeMembership([this](ConversionJob& job, JobQueue::Membership membership) {
              follow(job, membership);
          })) {
    for (const auto& job : queue.taskArray()) jobs_.push_back(job.get());
}

void JobListModel::follow(ConversionJob& job, JobQueue::Membership membership) {
    if (membership == JobQueue::Membership::Begins) {
        const auto& array = queue_.taskArray();
        const auto found = std::ranges::find(array, &job, &std::unique_ptr<ConversionJob>::get);
        const auto row = found - array.begin();
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(row));
        jobs_.insert(jobs_.begin() + row, &job);
        endInsertRows();
    } else if (const auto index = indexOf(job); index.isValid()) {
        beginRemoveRows({}, index.row(), index.row());
        jobs_.erase(jobs_.begin() + index.row());
        endRemoveRows();
    }
}

int JobListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(jobs_.size());
}

QVariant JobListModel::data(const QModelIndex& index, int role) const {
    const auto* const shown = job(index);
    if (shown == nullptr) return {};
    switch (role) {
        case Qt::DisplayRole:  // what a screen reader says, and what typing searches
            return spokenText(*shown);
        case Qt::ToolTipRole:
            return toToolTip(whereFromAndTo(shown->fileInfo()));
        default:
            return {};
    }
}

ConversionJob* JobListModel::job(const QModelIndex& index) const {
    return index.isValid() ? jobs_.at(static_cast<std::size_t>(index.row())) : nullptr;
}

QModelIndex JobListModel::indexOf(const ConversionJob& job) const {
    const auto found = std::ranges::find(jobs_, &job);
    return found == jobs_.end() ? QModelIndex() : index(static_cast<int>(found - jobs_.begin()), 0);
}

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
        return spokenText(*job);
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

QAccessibleInterface* describe(const QString& /*className*/, QObject* object) {
    // Qt takes over what is made here.
    if (auto* const list = dynamic_cast<JobListView*>(object)) return new AccessibleList(*list);
    auto* const row = dynamic_cast<JobRow*>(object);
    if (row == nullptr) return nullptr;
    auto* const list = dynamic_cast<JobListView*>(row->parentWidget()->parentWidget());
    return list == nullptr ? nullptr : new AccessibleRow(*row, *list);
}

}  // namespace

void describeJobLists() {
    QAccessible::installFactory(describe);
}

void tellRowFocus(const JobListView& list) {
    if (!QAccessible::isActive() || !list.hasFocus()) return;
    auto* const row = list.rowOf(list.currentIndex());
    if (row == nullptr) return;
    QAccessibleEvent event(row, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void tellRowChange(JobRow& row) {
    if (!QAccessible::isActive()) return;
    QAccessibleEvent event(&row, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void tellSelection(const JobListView& list, const QItemSelection& selected,
                   const QItemSelection& deselected) {
    if (!QAccessible::isActive()) return;
    for (auto* const row : list.rows().rows()) {
        const auto index = list.indexOf(*row->job());
        if (!selected.contains(index) && !deselected.contains(index)) continue;
        QAccessible::State changed;
        changed.selected = true;  // what has changed, whichever way
        QAccessibleStateChangeEvent event(row, changed);
        QAccessible::updateAccessibility(&event);
    }
}

}  // namespace reelvane
