#include "media/probe.h"

#include <system_error>
#include <utility>

#include "media/report_outline.h"
#include "support/bundle.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/child_process.h"
#include "support/ports/main_bundle.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr int kMostReferenceFrames = 16;  // of any H.264 stream (ITU-T H.264 A.3.1)

/// Only a file can be probed: reading a pipe or a device could block for ever.
bool isFile(const std::filesystem::path& path) {
    std::error_code failed;
    return std::filesystem::is_regular_file(path, failed);
}

bool isRefusedLink(const std::filesystem::path& path, bool sandboxed) {
    return Fennimar::fileIsAlias(path) && (sandboxed || !Fennimar::fileExists(path));
}

ProbeToolProblem toolProblemOf(const RunResult& result) {
    if (result.finished) return ProbeToolProblem::None;
    switch (result.error) {
        case LaunchError::NotFound:
            return ProbeToolProblem::Missing;
        case LaunchError::NoResources:
            return ProbeToolProblem::NoResources;
        case LaunchError::NotExecutable:
            return ProbeToolProblem::Broken;
        case LaunchError::None:
        case LaunchError::ArgumentsTooLong:  // the path's fault
            break;
    }
    return ProbeToolProblem::None;
}

RunResult runProbe(const std::filesystem::path& path, const ProbeTools& tools) {
    return tools.launcher->run(
        {.executable = tools.ffmpeg, .arguments = {"-i", path.native()}, .stop = tools.stop});
}

/// What the probe printed. It repeats the path, whose bytes need not be UTF-8 as a report must be.
std::string reportOf(const RunResult& result, const std::filesystem::path& path) {
    if (!result.finished) return {};
    const auto& output = result.finished->output;
    if (Fennimar::isValidUtf8(path.native())) return output;
    return Fennimar::replaced(output, path.native(), Fennimar::validUtf8(path.native()));
}

/// Only a count above the picture's budget is of interest, and no stream exceeds the most.
bool needsReferenceFrames(const ProbeReport& report) {
    const auto& record = report.record;
    if (report.refusedVideoCodec || !record.videoTrackID || record.videoCodec != "h264" ||
        record.referenceFrames || isPlaylistDemuxer(record.demuxer)) {
        return false;
    }
    const auto budget = referenceFrameBudget(record.resolution);
    return budget && *budget < kMostReferenceFrames;
}

/// Reads the stream's parameter sets by a second run; absent when that could not be started.
std::optional<int> tracedReferenceFrames(const std::filesystem::path& path, int videoTrackID,
                                         const ProbeTools& tools) {
    const auto result = tools.launcher->run(
        {.executable = tools.ffmpeg,
         .arguments = {"-i", path.native(), "-map", makeString("0:%i", videoTrackID), "-c", "copy",
                       "-frames:v", "1", "-bsf:v", "trace_headers", "-f", "null", "-"},
         .stop = tools.stop});
    if (!result.finished) return std::nullopt;
    return referenceFramesInTrace(result.finished->output);
}

}  // namespace

Inspection initWithURL(const std::filesystem::path& url, const ProbeOptions& options,
                       const ProbeTools& tools) {
    const auto path = Fennimar::absolutePath(url);
    const auto fileName = path.filename().native();
    const auto& translations = *tools.translations;
    if (isRefusedLink(path, tools.sandboxed)) {
        return {.alerts = {aliasAlert(translations, fileName)}};
    }
    if (!isFile(path)) {
        return {.alerts = {invalidFileAlert(translations, fileName, tools.appName)}};
    }

    const auto result = runProbe(path, tools);
    const auto problem = toolProblemOf(result);
    if (problem != ProbeToolProblem::None) return {.toolProblem = problem};
    const auto text = reportOf(result, path);
    auto report = parseProbeReport(text, options);
    auto& record = report.record;
    if (needsReferenceFrames(report)) {
        record.referenceFrames = tracedReferenceFrames(path, *record.videoTrackID, tools);
    }

    auto verdict = vet(translations, report, fileName, tools.appName);
    if (!verdict.accepted && result.finished && !isFromFfmpeg(text)) {
        return {.toolProblem = ProbeToolProblem::Broken};
    }
    Inspection inspection{.alerts = std::move(verdict.alerts)};
    if (!verdict.accepted) return inspection;
    record.fileName = fileName;
    record.fileURL = path;
    record.fileSize = Fennimar::fileSize(path);
    inspection.record = std::move(record);
    return inspection;
}

std::int32_t durationOfFile(const std::filesystem::path& url, const ProbeTools& tools) {
    const auto path = Fennimar::absolutePath(url);
    if (!isFile(path)) return -1;
    const auto result = runProbe(path, tools);
    return durationInReport(reportOf(result, path));
}

std::string toolProblemText(const Translations& translations, ProbeToolProblem problem,
                            const MainBundle& mainBundle) {
    const auto path = Fennimar::validUtf8(mainBundle.pathForResource("ffmpeg").native());
    const auto variable = mainBundle.variableNaming("ffmpeg");
    const auto advice = [&](std::string_view install) {
        return variable.empty()
                   ? translations.localized(install)
                   : makeString(translations.localized("%@ names it: correct or unset it."),
                                variable);
    };
    switch (problem) {
        case ProbeToolProblem::None:
            break;
        case ProbeToolProblem::Missing:
            return makeString(
                translations.localized(
                    "The program '%@', which reads and converts the movies, is missing. %@"),
                path, advice(localizable("Install it with: sudo apt install ffmpeg")));
        case ProbeToolProblem::Broken:
            return makeString(
                translations.localized("The program '%@', which reads and converts the movies, "
                                       "does not run as ffmpeg. %@"),
                path,
                advice(localizable("Install it again with: sudo apt install --reinstall ffmpeg")));
        case ProbeToolProblem::NoResources:
            return translations.localized(
                "A basic system capability failed (posix_spawn). Please reboot your system and try "
                "again.");
    }
    return {};
}

}  // namespace reelvane
