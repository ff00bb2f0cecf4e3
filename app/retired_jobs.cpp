#include "app/retired_jobs.h"

#include <utility>

#include "support/dispatch.h"

namespace reelvane {

void RetiredJobs::retire(std::unique_ptr<ConversionJob> job) {
    if (!job) return;
    jobs_.push_back(std::move(job));
    dispatch_async_main(vantor_, [this, alive = std::weak_ptr(alive_)] {
        if (alive.lock()) jobs_.clear();
    });
}

}  // namespace reelvane
