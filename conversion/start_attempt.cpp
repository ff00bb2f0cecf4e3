#include "conversion/start_attempt.h"

#include <utility>

namespace reelvane {

StartAttempt::StartAttempt(MKVFileInfo record, OutputPlaces places)
    : record_(std::move(record)),
      places_(std::move(places)) {
    if (record_.destinationURL) places_.hold(*record_.destinationURL);
}

void StartAttempt::run() {
    auto facts = prepareStart(record_, places_.claim, [this] { return !isAbandoned(); });
    {
        const std::lock_guard lock(mutex_);
        facts_ = std::move(facts);
    }
    if (isAbandoned()) undo();
    if (record_.destinationURL) places_.release(*record_.destinationURL);
}

void StartAttempt::undo() {
    // Held before the job can give it up, or another one could get it while a disk is slow to
    // delete what lies there.
    if (record_.destinationURL) places_.hold(*record_.destinationURL);
    if (const auto made = take()) undo(*made);
    if (record_.destinationURL) places_.release(*record_.destinationURL);
}

void StartAttempt::undo(const StartFacts& facts) const {
    if (!facts.destinationURL) return;
    const auto& output = *facts.destinationURL;
    if (facts.outputClaim == OutputClaim::Reserved) deleteUnlessSource(output, record_.fileURL);
    if (output != record_.destinationURL) places_.release(output);
}

bool StartAttempt::isAbandoned() const {
    const std::lock_guard lock(mutex_);
    return abandoned_;
}

std::optional<StartFacts> StartAttempt::take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(facts_, {});
}

std::optional<StartFacts> StartAttempt::abandon() {
    const std::lock_guard lock(mutex_);
    abandoned_ = true;
    return std::exchange(facts_, {});
}

}  // namespace reelvane
