#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "conversion/conversion_settings.h"
#include "conversion/track_plan.h"

namespace reelvane {

class ConversionJob;
class Translations;

/// What is told of one job beside its row, in the user's language.
struct JobDetails {
    std::vector<TrackOutcome> tracks{};
    std::vector<std::string> arguments{};  ///< of the converter, without the executable
    std::string problem{};  ///< why a queued job could not be started now; empty: nothing
};

/// For a job that has been started: its own arguments, and the tracks by the preferences that it
/// was started with, whatever they are now. For a queued job: what plannedCommand says of the
/// present preferences. For one that failed before there was a command: nothing.
[[nodiscard]] JobDetails jobDetails(const Translations& translations, const ConversionJob& job,
                                    const ConversionSettings& present,
                                    const std::filesystem::path& progressFolder);

}  // namespace reelvane
