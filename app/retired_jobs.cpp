#include "app/retired_jobs.h"

#include <utility>

#include "support/dispatch.h"

namespace reelvane {

void RetiredJobs::retire(std::unique_ptr<ConversionJob> job) {
    if (!job) return;
    jobs_.push_back(std::move(job));
    clearLater();
}

void RetiredJobs::clearLater() {
    dispatch_async_main(vantor_, [this, alive = std::weak_ptr(alive_)] {
        if (alive.lock() && holds_ == 0) jobs_.clear();
    });
}

RetiredJobs::Hold::~Hold() {
    // The job whose call-back made this hold is still at work; a turn may have passed it over.
    if (--retired_.holds_ == 0 && !retired_.jobs_.empty()) retired_.clearLater();
}

}  // namespace reelvane
