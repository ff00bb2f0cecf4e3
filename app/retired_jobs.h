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

private:
    Vantor& vantor_;
    std::vector<std::unique_ptr<ConversionJob>> jobs_;
    // Shared only so that a turn of the loop after this object's end can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
