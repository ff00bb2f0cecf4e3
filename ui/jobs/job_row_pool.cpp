#include "ui/jobs/job_row_pool.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QApplication>

namespace reelvane {

JobRowPool::JobRowPool(QWidget& list, MakeRow makeRow)
    : list_(list),
      makeRow_(std::move(makeRow)),
      lastStation_(&list) {
    addRow();  // it knows how tall a row is
}

JobRow& JobRowPool::addRow() {
    auto* const row = makeRow_();
    row->hide();
    for (auto* const button : row->buttons()) {
        QWidget::setTabOrder(lastStation_, button);
        lastStation_ = button;
    }
    all_.push_back(row);
    return *row;
}

int JobRowPool::rowHeight() const {
    return all_.front()->minimumHeight();
}

std::vector<JobRow*> JobRowPool::rows() const {
    std::vector<JobRow*> rows;
    std::ranges::copy_if(all_, std::back_inserter(rows),
                         [](const JobRow* row) { return row->job() != nullptr; });
    return rows;
}

JobRow* JobRowPool::rowOf(const ConversionJob& job) const {
    const auto found = std::ranges::find(all_, &job, &JobRow::job);
    return found == all_.end() ? nullptr : *found;
}

void JobRowPool::showJobs(std::span<ConversionJob* const> jobs, QPoint topLeft, int width) {
    for (auto* const row : rows()) {
        if (std::ranges::find(jobs, row->job()) == jobs.end()) clear(*row);
    }
    QRect place(topLeft, QSize(width, rowHeight()));
    for (auto* const job : jobs) {
        auto* row = rowOf(*job);
        if (row == nullptr) {
            row = &freeRow();
            row->showJob(*job);
            row->setCurrent(job == current_);
        }
        row->setGeometry(place);
        row->show();
        place.translate(0, place.height());
    }
    for (auto* const row : all_) {
        if (row->job() == nullptr) row->hide();
    }
}

JobRow& JobRowPool::freeRow() {
    const auto found = std::ranges::find(all_, nullptr, &JobRow::job);
    return found == all_.end() ? addRow() : **found;
}

void JobRowPool::forget(const ConversionJob& job) {
    if (current_ == &job) current_ = nullptr;
    if (auto* const row = rowOf(job)) {
        clear(*row);
        row->hide();
    }
}

void JobRowPool::clear(JobRow& row) {
    if (row.isAncestorOf(QApplication::focusWidget())) list_.setFocus();
    row.clear();
}

void JobRowPool::setCurrent(const ConversionJob* job) {
    current_ = job;
    for (auto* const row : rows()) row->setCurrent(row->job() == job);
}

void JobRowPool::refresh() const {
    for (auto* const row : rows()) row->refresh();
}

}  // namespace reelvane
