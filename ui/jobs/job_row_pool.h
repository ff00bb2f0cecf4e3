#pragma once

#include <functional>
#include <span>
#include <vector>

#include <QPoint>

#include "ui/jobs/job_row.h"

class QWidget;

namespace reelvane {

/// The row widgets of a list: as many as are visible at once, whatever the list's length. Owned by
/// the list; main thread only.
class JobRowPool {
public:
    using MakeRow = std::function<JobRow*()>;

    /// `list` gets the keyboard back from a row that goes out of sight.
    JobRowPool(QWidget& list, MakeRow makeRow);

    [[nodiscard]] int rowHeight() const;
    /// The rows that show jobs, in no order.
    [[nodiscard]] std::vector<JobRow*> rows() const;
    [[nodiscard]] JobRow* rowOf(const ConversionJob& job) const;

    /// Shows just these jobs, one under the other.
    void showJobs(std::span<ConversionJob* const> jobs, QPoint topLeft, int width);
    /// The job leaves the list.
    void forget(const ConversionJob& job);
    /// The row whose buttons the tab key reaches; null: none.
    void setCurrent(const ConversionJob* job);
    void refresh() const;

private:
    JobRow& addRow();
    [[nodiscard]] JobRow& freeRow();
    void clear(JobRow& row);

    QWidget& list_;
    MakeRow makeRow_;
    std::vector<JobRow*> all_;  ///< children of the list; never empty
    QWidget* lastStation_;      ///< of the tab key
    const ConversionJob* current_ = nullptr;
};

}  // namespace reelvane
