#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "media/mkv_file_info.h"
#include "support/localization.h"

namespace reelvane {

/// The numbers are shown and compared: never renumber.
enum class ConversionJobState : std::int32_t { Queued, Converting, Paused, Finished, Failed };

inline constexpr auto kConversionJobStateWords =
    std::to_array({localizable("Queued"), localizable("Converting"), localizable("Paused"),
                   localizable("Finished"), localizable("Failed")});
static_assert(kConversionJobStateWords.size() == std::size_t(ConversionJobState::Failed) + 1);

class Translations;

/// Seconds that are left after `elapsed` seconds at `progress` per cent, 0 to 18000. What is not a
/// number (nothing done in no time) is passed on.
[[nodiscard]] double remainingTime(double progress, double elapsed);

/// The same for a place of its own, where nothing is shown that is not known: absent while nothing
/// is done, and without an upper bound.
[[nodiscard]] std::optional<double> timeLeft(double progress, double elapsed);

/// What a job's status line depends on.
struct StatusFacts {
    ConversionJobState state = ConversionJobState::Queued;
    std::span<const AudioTrack> audio{};
    std::size_t audioTrackIndex = 0;
    double remainingSeconds = 0;   ///< of a running job
    double conversionSeconds = 0;  ///< of a finished job
};

/// In the user's language.
[[nodiscard]] std::string statusLine(const Translations& translations, const StatusFacts& facts);

}  // namespace reelvane
