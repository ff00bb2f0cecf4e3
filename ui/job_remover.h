#pragma once

#include <vector>

#include <QTimer>

#include "app/job_queue.h"
#include "support/observable.h"

namespace reelvane {

/// Takes many jobs off the list without holding the window up: a few in each turn of the main
/// loop. Main thread only.
class JobRemover {
public:
    explicit JobRemover(JobQueue& queue);

    void remove(const std::vector<ConversionJob*>& jobs);

private:
    void removeSome();
    [[nodiscard]] ConversionJob& takeNext();

    std::vector<ConversionJob*> waiting_;  ///< all of them in the list
    QTimer turn_;                          ///< runs only while there are any
    Subscription subscription_;
};

}  // namespace reelvane
