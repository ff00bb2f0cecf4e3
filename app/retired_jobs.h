#pragma once

#include <memory>
#include <vector>

#include "conversion/conversion_job.h"

namespace reelvane {

class Vantor;

/// Jobs that left the list. Each lives on until a later turn of the main loop, because it is
/// usually its own call-back that took it off. Main thread only.
class RetiredJobs {
public:
    explicit RetiredJobs(Vantor& vantor) : vantor_(vantor) {}

    void retire(std::unique_ptr<ConversionJob> job);

    /// While one of these lives nothing is destroyed: the caller may show an alert, which turns the
    /// main loop under a job's own call-back.
    class Hold {
    public:
        explicit Hold(RetiredJobs& retired) : retired_(retired) { ++retired_.holds_; }
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        Hold(Hold&&) = delete;
        Hold& operator=(Hold&&) = delete;

    private:
        RetiredJobs& retired_;
    };

private:
    void clearLater();

    Vantor& vantor_;
    std::vector<std::unique_ptr<ConversionJob>> jobs_;
    int holds_ = 0;
    // Shared only so that a turn of the loop after this object's end can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
