#pragma once

#include <cstdint>

#include "conversion/value_transformers.h"

namespace reelvane {

/// What a job's row and its menu offer in a state of the job.
struct JobControls {
    bool pauses = false;
    bool continues = false;  ///< or starts
    bool starts = false;     ///< for the first time
    bool reveals = false;    ///< by the arrow, which explains a failure
    bool explains = false;
    bool unfinished = false;
};

[[nodiscard]] constexpr JobControls jobControls(ConversionJobState state) {
    const auto number = static_cast<std::int32_t>(state);
    const bool reveals = StatusNotQueuedAndPausedValueTransformer::transformedValue(number) != 0;
    const bool unfinished = StatusNotFinishedValueTransformer::transformedValue(number) != 0;
    return {
        .pauses = StatusIsRunningValueTransformer::transformedValue(number) != 0,
        .continues = unfinished && StatusNotRunningValueTransformer::transformedValue(number) != 0,
        .starts = StatusIsQueuedValueTransformer::transformedValue(number) != 0,
        .reveals = reveals,
        .explains = reveals && state == ConversionJobState::Failed,
        .unfinished = unfinished};
}

}  // namespace reelvane
