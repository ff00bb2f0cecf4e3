#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "conversion/conversion_settings.h"
#include "conversion/track_plan.h"

namespace reelvane {

class ConversionJob;
class Translations;

/// What the last line of a job's row says, in the user's language.
struct RowNote {
    std::string text{};  ///< empty: nothing
    bool warns = false;  ///< it is told in amber
};

/// Of a queued job: that a warning is to be read which was not told when the movie was taken in.
/// Of a Finished job: the first of its own warnings, else that as well, what was left out, where
/// the result lies and what it is called unless that is beside its source and by its name, and
/// what it holds. Else nothing.
[[nodiscard]] RowNote rowNote(const Translations& translations, const ConversionJob& job);

/// What became of each track of a job that has been started; of another nothing.
[[nodiscard]] std::vector<TrackOutcome> tracksOfRun(const Translations& translations,
                                                    const ConversionJob& job);

/// What is told of one job beside its row, in the user's language.
struct JobDetails {
    std::vector<TrackOutcome> tracks{};
    std::vector<std::string> arguments{};  ///< of the converter, without the executable
    std::string problem{};  ///< why a queued job could not be started now; empty: nothing
    std::vector<std::string> warnings{};  ///< that the user was not told when it was taken in
};

/// For a job that has been started: its own arguments, and the tracks by the preferences that it
/// was started with, whatever they are now. For a queued job: what plannedCommand says of the
/// present preferences. For one that failed before there was a command: nothing.
[[nodiscard]] JobDetails jobDetails(const Translations& translations, const ConversionJob& job,
                                    const ConversionSettings& present,
                                    const std::filesystem::path& progressFolder);

}  // namespace reelvane
