#include "ui/jobs/job_list_model.h"

#include <algorithm>

#include "conversion/conversion_job.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

QString whereFromAndTo(const MKVFileInfo& record) {
    auto from = JobListModel::tr("From %1").arg(displayPath(record.fileURL));
    if (!record.destinationURL) return from;
    return from + '\n' + JobListModel::tr("To %1").arg(displayPath(*record.destinationURL));
}

/// "Film.mkv, Status: Queued", for who cannot see the row.
QString spokenText(const ConversionJob& job) {
    return JobListModel::tr("%1, %2").arg(toQString(job.fileInfo().fileName),
                                          toQString(job.stateInfoString()));
}

}  // namespace

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

}  // namespace reelvane
