#include "ui/jobs/job_list_view.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QItemSelection>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include "app/app_delegate.h"
#include "ui/jobs/details_popover.h"
#include "ui/jobs/job_actions.h"
#include "ui/jobs/job_list_model.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr int kInset = 2;
constexpr double kRowRounding = 6;
constexpr double kRowFocusWidth = 2;
constexpr float kLineStrength = 0.12F;

/// Paints what lies behind the row widgets: selection, pointer and focus.
class RowGround final : public QStyledItemDelegate {
public:
    explicit RowGround(JobListView& list) : QStyledItemDelegate(&list), list_(list) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& /*option*/,
                                 const QModelIndex& /*index*/) const override {
        return {1, list_.rows().rowHeight()};  // as wide as the list
    }

private:
    JobListView& list_;
};

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
        painter->drawRoundedRect(shape, kRowRounding, kRowRounding);
    }
    const bool focused = list_.currentIndex() == index && list_.hasFocus();
    if (focused) {
        const double half = kRowFocusWidth / 2;
        painter->setPen(QPen(accent(palette), kRowFocusWidth));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(shape.adjusted(half, half, -half, -half), kRowRounding - half,
                                 kRowRounding - half);
    }
    painter->restore();
}

}  // namespace

JobListView::JobListView(const UiContext& context, PosterFrames& posters, QWidget* parent)
    : QListView(parent),
      context_(context),
      jobs_(new JobListModel(context.controller.queue(), this)),
      commands_(context, [this](ConversionJob& job) { openDetails(job); }),
      icons_(context.icons),
      rows_(*this, [this, &posters] { return new JobRow(commands_, posters, icons_, viewport()); }),
      actions_(new JobActions(*this,
                              {.current = [this] { return currentJob(); },
                               .count = [this] { return selectedCount(); },
                               .remove = [this] { removeSelected(); }},
                              commands_, icons_, context.icons.symbolic("copy"))),
      states_(context.controller.queue().observeStates([this] { refreshAll(); })),
      reading_(bind(context.controller.intake().present(), [this](const PresentFile& present) {
          actions_->setReturnReveals(present.state != IntakeState::Reading);
      })) {
    setAccessibleName(tr("Conversions"));
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(new RowGround(*this));
    setModel(jobs_);
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(this, &QListView::doubleClicked, this, [this](const QModelIndex& index) {
        if (auto* const job = jobs_->job(index)) commands_.reveal(*job);
    });
    for (const auto change :
         {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(jobs_, change, this, [this] {
            if (jobs_->rowCount() < 2) actions_->refresh();  // an empty list is laid out no more
        });
    }
    actions_->refresh();
}

JobListView::~JobListView() = default;

QList<QAction*> JobListView::jobActions() const {
    return actions_->all();
}

ConversionJob* JobListView::currentJob() const {
    return jobs_->job(currentIndex());
}

int JobListView::selectedCount() const {
    int count = 0;
    for (const auto& range : selectionModel()->selection()) count += range.height();
    return count;
}

std::vector<ConversionJob*> JobListView::selectedJobs() const {
    std::vector<ConversionJob*> jobs;
    for (const auto& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            jobs.push_back(jobs_->job(jobs_->index(row, 0)));
        }
    }
    if (auto* const job = currentJob(); jobs.empty() && job != nullptr) jobs.push_back(job);
    return jobs;
}

void JobListView::removeSelected() {
    const auto jobs = selectedJobs();
    if (jobs.empty()) return;
    selectBeside(jobs);
    commands_.remove(jobs);
}

void JobListView::selectBeside(const std::vector<ConversionJob*>& leaving) {
    const std::unordered_set<const ConversionJob*> gone(leaving.begin(), leaving.end());
    const auto stays = [this, &gone](int row) {
        return !gone.contains(jobs_->job(jobs_->index(row, 0)));
    };
    const int count = jobs_->rowCount();
    int row = std::max(currentIndex().row(), 0);
    while (row < count && !stays(row)) ++row;
    if (row == count) {
        do {
            --row;
        } while (row >= 0 && !stays(row));
    }
    // All at once, because a selection in many pieces makes each removal dear.
    selectionModel()->clearSelection();
    if (row >= 0) setCurrentIndex(jobs_->index(row, 0));
}

JobRow* JobListView::rowOf(const QModelIndex& index) const {
    const auto* const job = jobs_->job(index);
    return job == nullptr ? nullptr : rows_.rowOf(*job);
}

QModelIndex JobListView::indexOf(const ConversionJob& job) const {
    return jobs_->indexOf(job);
}

void JobListView::openDetails(ConversionJob& job) {
    if (details_ == nullptr) details_ = new DetailsPopover(context_, this);
    details_->showJob(job);
}

void JobListView::refreshAll() {
    rows_.refresh();
    actions_->refresh();
}

void JobListView::doItemsLayout() {
    const auto anchor = anchor_;
    settling_ = true;
    QListView::doItemsLayout();
    verticalScrollBar()->setSingleStep(rows_.rowHeight() / 2);
    verticalScrollBar()->setValue(anchor.row * rows_.rowHeight() + anchor.offset);
    settling_ = false;
    placeRows();
    actions_->refresh();
}

void JobListView::updateGeometries() {
    QListView::updateGeometries();
    placeRows();
}

void JobListView::scrollContentsBy(int dx, int dy) {
    QListView::scrollContentsBy(dx, dy);
    placeRows();
}

void JobListView::placeRows() {
    if (settling_) return;
    const int height = rows_.rowHeight();
    const int top = verticalScrollBar()->value();
    anchor_ = {.row = top / height, .offset = top % height};
    std::vector<ConversionJob*> visible;
    const int end = std::min((top + viewport()->height() - 1) / height + 1, jobs_->rowCount());
    for (int row = anchor_.row; row < end; ++row) {
        visible.push_back(jobs_->job(jobs_->index(row, 0)));
    }
    rows_.showJobs(visible, {0, -anchor_.offset}, viewport()->width());
}

void JobListView::rowsInserted(const QModelIndex& parent, int start, int end) {
    anchor_.rowsInserted(start, end - start + 1);
    QListView::rowsInserted(parent, start, end);
}

void JobListView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
    for (int row = start; row <= end; ++row) {
        const auto& job = *jobs_->job(jobs_->index(row, 0));
        rows_.forget(job);
        actions_->forget(job);
    }
    anchor_.rowsRemoved(start, end - start + 1);
    // Where the current row goes, its neighbour becomes current: no reason to show another place.
    setAutoScroll(false);
    QListView::rowsAboutToBeRemoved(parent, start, end);
    setAutoScroll(true);
}

void JobListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    // What QListView adds tells assistive programs of items that the list is described without.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::currentChanged(current, previous);
    rows_.setCurrent(jobs_->job(current));
    announceRowFocus();
    actions_->refresh();
}

void JobListView::selectionChanged(const QItemSelection& selected,
                                   const QItemSelection& deselected) {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): as above
    QAbstractItemView::selectionChanged(selected, deselected);
    announceSelection(selected, deselected);
    actions_->refresh();
}

void JobListView::announceRowFocus() {
    if (!QAccessible::isActive() || !hasFocus()) return;
    auto* const row = rowOf(currentIndex());
    if (row == nullptr) return;
    QAccessibleEvent event(row, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void JobListView::announceSelection(const QItemSelection& selected,
                                    const QItemSelection& deselected) {
    if (!QAccessible::isActive()) return;
    for (auto* const row : rows_.rows()) {
        const auto index = indexOf(*row->job());
        if (!selected.contains(index) && !deselected.contains(index)) continue;
        QAccessible::State changed;
        changed.selected = true;  // what has changed, whichever way
        QAccessibleStateChangeEvent event(row, changed);
        QAccessible::updateAccessibility(&event);
    }
}

void JobListView::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    announceRowFocus();
}

void JobListView::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const auto index =
        byKey ? currentIndex() : indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (!index.isValid()) return;
    actions_->popUp(byKey ? viewport()->mapToGlobal(visualRect(index).center())
                          : event->globalPos());
}

void JobListView::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        scheduleDelayedItemsLayout();  // the rows have another height now
    }
}

}  // namespace reelvane
