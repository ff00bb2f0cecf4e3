#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "app/job_queue.h"
#include "support/observable.h"

namespace reelvane {

class Vantor;

/// Takes many jobs off the list without holding the main thread up: a few in each turn of its loop.
/// Main thread only.
class JobRemover {
public:
    /// `ended` is told when all that was to go is gone.
    JobRemover(Vantor& vantor, JobQueue& queue, std::function<void()> ended);

    /// All of them in the list.
    void remove(const std::vector<ConversionJob*>& jobs);
    /// True as long as jobs wait to be removed.
    [[nodiscard]] bool isRemoving() const { return removing_; }

private:
    void removeSome();

    Vantor& vantor_;
    std::function<void()> ended_;
    std::vector<ConversionJob*> waiting_;  ///< taken from the end
    bool removing_ = false;
    Subscription subscription_;
    // Shared only so that a turn of the loop after this object's end can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
