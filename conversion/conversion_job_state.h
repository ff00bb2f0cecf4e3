#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace reelvane {

/// The numbers are shown and compared: never renumber.
enum class ConversionJobState : std::int32_t { Queued, Converting, Paused, Finished, Failed };

inline constexpr auto kConversionJobStateWords =
    std::to_array<std::string_view>({"Queued", "Converting", "Paused", "Finished", "Failed"});
static_assert(kConversionJobStateWords.size() == std::size_t(ConversionJobState::Failed) + 1);

}  // namespace reelvane
