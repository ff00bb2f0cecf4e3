#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "support/localization.h"

namespace reelvane {

/// The numbers are shown and compared: never renumber.
enum class ConversionJobState : std::int32_t { Queued, Converting, Paused, Finished, Failed };

inline constexpr auto kConversionJobStateWords =
    std::to_array({localizable("Queued"), localizable("Converting"), localizable("Paused"),
                   localizable("Finished"), localizable("Failed")});
static_assert(kConversionJobStateWords.size() == std::size_t(ConversionJobState::Failed) + 1);

}  // namespace reelvane
