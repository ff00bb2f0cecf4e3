#pragma once

#include <vector>

#include <QAbstractListModel>

#include "app/job_queue.h"
#include "support/observable.h"

namespace reelvane {

/// The rows of the job list, in the queue's order. It follows who is in the list; what changes
/// about a job its own observers tell. Main thread only.
class JobListModel final : public QAbstractListModel {
public:
    explicit JobListModel(JobQueue& queue, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

    [[nodiscard]] ConversionJob* job(const QModelIndex& index) const;
    /// Not valid when the job is not in the list.
    [[nodiscard]] QModelIndex indexOf(const ConversionJob& job) const;

private:
    void follow(ConversionJob& job, JobQueue::Membership membership);

    // As the views know them: the queue tells of a change when it has been made, and a model has to
    // announce it before.
    std::vector<ConversionJob*> jobs_;
    const JobQueue& queue_;
    Subscription subscription_;
};

}  // namespace reelvane
