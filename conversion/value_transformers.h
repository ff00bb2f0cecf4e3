#pragma once

#include <cstdint>

#include "conversion/conversion_job_state.h"

namespace reelvane {

/// The base of the transformers that turn a value into a number for a control of a job's row. The
/// status transformers take the number of a job's state. None can be reversed.
struct NumberValueTransformer {
    using Result = int;
    static constexpr bool kAllowsReverseTransformation = false;

protected:
    static constexpr bool is(std::int32_t state, ConversionJobState wanted) {
        return state == static_cast<std::int32_t>(wanted);
    }
};

/// True when the value is there, has a count, and its count is above 0.
struct NonEmptyCollectionValueTransformer : NumberValueTransformer {
    template <typename T>
    [[nodiscard]] static constexpr bool transformedValue(const T& value) {
        if constexpr (requires { value.has_value(); }) {
            return value.has_value() && transformedValue(*value);
        } else if constexpr (requires { value.size(); }) {
            return value.size() > 0;
        } else {
            return false;
        }
    }
};

struct StatusIsRunningValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Converting) ? 1 : 0;
    }
};

struct StatusIsQueuedValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Queued) ? 1 : 0;
    }
};

struct StatusNotRunningValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Converting) ? 0 : 1;
    }
};

struct StatusNotQueuedAndPausedValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Queued) || is(state, ConversionJobState::Paused) ? 0
                                                                                              : 1;
    }
};

struct StatusNotFinishedValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Finished) || is(state, ConversionJobState::Failed) ? 0
                                                                                                : 1;
    }
};

}  // namespace reelvane
