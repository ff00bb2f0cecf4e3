#pragma once

#include <vector>

#include <QListView>

#include "ui/jobs/job_commands.h"
#include "ui/jobs/job_row_pool.h"
#include "ui/ui_context.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {

class DetailsPopover;
class JobActions;
class JobListModel;
class PosterFrames;

/// Which row stands at the top of a list's view, and how much of it is scrolled away. It stays with
/// its row while others come and go above; a list that shows its beginning goes on doing so.
struct ScrollAnchor {
    int row = 0;
    int offset = 0;

    void rowsInserted(int first, int count) {
        if (!isAtBeginning() && first <= row) row += count;
    }
    void rowsRemoved(int first, int count) {
        if (first + count <= row) {
            row -= count;
        } else if (first < row) {
            row = first;
        }
    }

private:
    [[nodiscard]] bool isAtBeginning() const { return row == 0 && offset == 0; }
};

/// The job list of the main window. What is visible has row widgets, which go from job to job as
/// the list is scrolled, so that their number does not grow with the list. Main thread only.
class JobListView final : public QListView {
public:
    JobListView(const UiContext& context, PosterFrames& posters, QWidget* parent = nullptr);
    ~JobListView() override;
    JobListView(const JobListView&) = delete;
    JobListView& operator=(const JobListView&) = delete;
    JobListView(JobListView&&) = delete;
    JobListView& operator=(JobListView&&) = delete;

    /// The commands for the current and the selected jobs, for a menu.
    [[nodiscard]] QList<QAction*> jobActions() const;

    [[nodiscard]] ConversionJob* currentJob() const;
    [[nodiscard]] int selectedCount() const;
    /// Takes the selected jobs off the list, or the current one when none is selected.
    void removeSelected();
    /// The row widget of a job; null when it is out of sight.
    [[nodiscard]] JobRow* rowOf(const QModelIndex& index) const;
    /// Not valid when the job is not in the list.
    [[nodiscard]] QModelIndex indexOf(const ConversionJob& job) const;
    [[nodiscard]] const JobRowPool& rows() const { return rows_; }

    void doItemsLayout() override;

protected:
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void placeRows();
    void refreshAll();
    void openDetails(ConversionJob& job);
    [[nodiscard]] std::vector<ConversionJob*> selectedJobs() const;
    void selectBeside(const std::vector<ConversionJob*>& leaving);
    /// The keyboard has come to a row.
    void announceRowFocus();
    /// Rows have been selected or are so no longer.
    void announceSelection(const QItemSelection& selected, const QItemSelection& deselected);

    UiContext context_;
    JobListModel* jobs_;
    JobCommands commands_;
    JobIcons icons_;
    JobRowPool rows_;
    JobActions* actions_;
    DetailsPopover* details_ = nullptr;  ///< made when first asked for
    ScrollAnchor anchor_;
    bool settling_ = false;  ///< the scroll position is not yet what it will be
    Subscription states_;
    Subscription reading_;
};

}  // namespace reelvane
