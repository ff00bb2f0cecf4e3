#include "conversion/job_details.h"

#include <utility>

#include "conversion/conversion_job.h"
#include "conversion/planned_command.h"

namespace reelvane {

JobDetails jobDetails(const Translations& translations, const ConversionJob& job,
                      const ConversionSettings& present,
                      const std::filesystem::path& progressFolder) {
    const auto& file = job.fileInfo();
    const auto track = job.audioTrackIndex();
    if (const auto& settings = job.runSettings()) {
        return {.tracks = trackPlan(translations, file, track, *settings),
                .arguments = job.arguments()};
    }
    if (job.state() != ConversionJobState::Queued) return {};
    auto planned = plannedCommand(translations, file, track, present, progressFolder);
    if (!planned.problem.empty()) return {.problem = std::move(planned.problem)};
    return {.tracks = trackPlan(translations, file, track, present),
            .arguments = std::move(planned.arguments)};
}

}  // namespace reelvane
