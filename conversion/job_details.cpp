#include "conversion/job_details.h"

#include <utility>

#include "conversion/command_builder.h"
#include "conversion/conversion_job.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {

namespace {

/// "as Film-0.m4v in Movies"; empty for an output beside its source and by its name.
std::string placeText(const Translations& translations, const MKVFileInfo& file) {
    if (!file.destinationURL) return {};
    const auto& output = *file.destinationURL;
    const auto name = Fennimar::validUtf8(output.filename().native());
    const auto parent = output.parent_path();
    const auto folder =
        Fennimar::validUtf8((parent.has_filename() ? parent.filename() : parent).native());
    const bool moved = parent != file.fileURL.parent_path();
    const bool renamed = output.stem() != file.fileURL.stem();
    if (moved && renamed) return makeString(translations.localized("as %@ in %@"), name, folder);
    if (moved) return makeString(translations.localized("in %@"), folder);
    return renamed ? makeString(translations.localized("as %@"), name) : "";
}

}  // namespace

RowNote rowNote(const Translations& translations, const ConversionJob& job) {
    const auto warned = job.fileInfo().warnings.empty()
                            ? std::string()
                            : translations.localized("See the warning in the details");
    if (job.state() == ConversionJobState::Queued) return {.text = warned};
    if (job.state() != ConversionJobState::Finished) return {};
    for (const auto& note : job.notes()) {
        if (note.kind != JobNote::Kind::Remark) return {.text = note.text, .warns = true};
    }
    RowNote told;
    for (const auto& part : {warned, leftOutText(translations, tracksOfRun(translations, job)),
                             placeText(translations, job.fileInfo()), job.details()}) {
        if (!told.text.empty() && !part.empty()) told.text += " · ";
        told.text += part;
    }
    return told;
}

std::vector<TrackOutcome> tracksOfRun(const Translations& translations, const ConversionJob& job) {
    const auto& settings = job.runSettings();
    if (!settings) return {};
    return trackPlan(translations, job.fileInfo(), job.audioTrackIndex(), *settings);
}

JobDetails jobDetails(const Translations& translations, const ConversionJob& job,
                      const ConversionSettings& present,
                      const std::filesystem::path& progressFolder) {
    const auto& file = job.fileInfo();
    const auto track = job.audioTrackIndex();
    if (job.runSettings()) {
        return {.tracks = tracksOfRun(translations, job),
                .arguments = job.arguments(),
                .warnings = file.warnings};
    }
    if (job.state() != ConversionJobState::Queued) return {.warnings = file.warnings};
    auto planned = plannedCommand(translations, file, track, present, progressFolder);
    if (!planned.problem.empty()) {
        return {.problem = std::move(planned.problem), .warnings = file.warnings};
    }
    return {.tracks = trackPlan(translations, file, track, present),
            .arguments = std::move(planned.arguments),
            .warnings = file.warnings};
}

}  // namespace reelvane
