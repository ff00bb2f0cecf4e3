#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "conversion/conversion_job_state.h"
#include "media/mkv_file_info.h"

namespace reelvane {

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
    std::span<const AudioEntry> audio{};
    std::size_t audioTrackIndex = 0;
    double remainingSeconds = 0;   ///< of a running job
    double conversionSeconds = 0;  ///< of a finished job
};

/// In the user's language.
[[nodiscard]] std::string statusLine(const Translations& translations, const StatusFacts& facts);

}  // namespace reelvane
