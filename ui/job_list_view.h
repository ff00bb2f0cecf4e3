#pragma once

#include <memory>
#include <vector>

#include <QListView>

#include "ui/bind.h"
#include "ui/job_commands.h"
#include "ui/job_row.h"
#include "ui/job_row_pool.h"
#include "ui/scroll_anchor.h"
#include "ui/ui_context.h"

namespace reelvane {

class DetailsPopover;
class JobActions;
class JobListModel;
class PosterFrames;

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
