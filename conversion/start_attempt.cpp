#include "conversion/start_attempt.h"

#include <utility>

namespace reelvane {

StartAttempt::StartAttempt(MKVFileInfo record, OutputPlaces places)
    : record_(std::move(record)),
      places_(std::move(places)) {}

void StartAttempt::run() {
    auto facts = prepareStart(record_, places_.claim);
    {
        const std::lock_guard lock(mutex_);
        facts_ = facts;
        if (!abandoned_) return;
    }
    if (!facts.destinationURL) return;
    if (facts.outputClaim == OutputClaim::Reserved) {
        deleteUnlessSource(*facts.destinationURL, record_.fileURL);
    }
    if (facts.destinationURL != record_.destinationURL) places_.release(*facts.destinationURL);
}

bool StartAttempt::isAbandoned() const {
    const std::lock_guard lock(mutex_);
    return abandoned_;
}

std::optional<StartFacts> StartAttempt::abandon() {
    const std::lock_guard lock(mutex_);
    return std::exchange(abandoned_, true) ? std::nullopt : facts_;
}

}  // namespace reelvane
