#include "media/probe.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <random>
#include <system_error>
#include <utility>

#include "media/picture_choice.h"
#include "media/report_mark.h"
#include "media/report_outline.h"
#include "mp4/mp4_reader.h"
#include "support/localization.h"
#include "support/logging.h"
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

RunResult runProbe(const std::filesystem::path& path, const ReportMark& mark,
                   const ProbeTools& tools) {
    auto arguments = mark.arguments();
    arguments.insert(arguments.end(), {"-i", path.native()});
    return tools.launcher->run(
        {.executable = tools.ffmpeg, .arguments = std::move(arguments), .stop = tools.stop});
}

ReportMark freshMark() {
    constexpr std::uint32_t kEightDigits = 0x80000000;
    return ReportMark(std::random_device()() | kEightDigits);
}

/// As ffmpeg prints a text: control characters, but for those that move the cursor, as "?".
std::string asPrinted(std::string text) {
    constexpr unsigned char kFirstMove = 0x08;
    constexpr unsigned char kLastMove = 0x0D;
    std::ranges::replace_if(
        text,
        [](char character) {
            const auto byte = static_cast<unsigned char>(character);
            return byte < kFirstMove || (byte > kLastMove && byte < 0x20);
        },
        '?');
    return text;
}

/// The report without the path that it repeats: a name may hold line feeds, and then words like a
/// report's. ffmpeg prints no more than 1023 bytes of a message (LINE_SZ in libavutil/log.c), so a
/// long path takes the end of its line with it.
std::string withoutPath(std::string report, const std::filesystem::path& path,
                        const std::string& standIn) {
    constexpr std::size_t kLongestMessage = 1023;
    constexpr std::string_view kInput = "Input #0, ";
    constexpr std::string_view kFrom = ", from '";
    const auto printed = asPrinted(path.native());
    for (auto input = report.find(kInput); input != std::string::npos;
         input = report.find(kInput, input + 1)) {
        const auto from = report.find(kFrom, input);
        if (from >= report.find('\n', input)) continue;
        const auto name = from + kFrom.size();
        const auto message =
            (report.substr(input, name - input) + printed + "':\n").substr(0, kLongestMessage);
        if (report.compare(input, message.size(), message) == 0) {
            report.replace(name, input + message.size() - name, standIn + "':\n");
        }
    }
    // Elsewhere, as in "PATH: Invalid data found", only a path with line feeds could mislead.
    return Fennimar::contains(printed, "\n") ? Fennimar::replaced(report, printed, standIn)
                                             : report;
}

std::string reportOf(const RunResult& result, const std::filesystem::path& path,
                     const ReportMark& mark) {
    if (!result.finished) return {};
    return mark.genuine(withoutPath(result.finished->output, path, mark.standIn()));
}

/// A wrapper of ffmpeg may print no banner, and then a bad movie's report has no mark of ffmpeg.
bool runsAsFfmpeg(const ProbeTools& tools) {
    const auto result = tools.launcher->run(
        {.executable = tools.ffmpeg, .arguments = {"-version"}, .stop = tools.stop});
    return result.finished && isFromFfmpeg(result.finished->output);
}

/// Where several video streams could be the movie's picture, more runs look at some places of it.
void settlePicture(const std::filesystem::path& path, const ProbeTools& tools,
                   ProbeReport& report) {
    auto& streams = report.videoStreams;
    if (report.refusedVideoCodec) return;
    for (const int place : placesToCount(report.record.runtimeSeconds)) {
        if (!areInDoubt(streams)) break;
        const auto result =
            tools.launcher->run({.executable = tools.ffmpeg,
                                 .arguments = countArguments(path.native(), streams, place),
                                 .stop = tools.stop});
        if (!result.finished) break;
        takeCounts(result.finished->output, streams);
    }
    choosePicture(report);
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

Inspection inspectFileAt(const std::filesystem::path& path, const ProbeOptions& options,
                         const ProbeTools& tools) {
    const auto fileName = path.filename().native();
    const auto identity = fileVersionOf(path);
    const auto mark = freshMark();
    const auto result = runProbe(path, mark, tools);
    const auto problem = toolProblemOf(result);
    if (problem != ProbeToolProblem::None) return {.toolProblem = problem};
    const auto text = reportOf(result, path, mark);
    auto report = parseProbeReport(text, options);
    auto& record = report.record;
    if (!isPlaylistDemuxer(record.demuxer)) settlePicture(path, tools, report);
    if (needsReferenceFrames(report)) {
        record.referenceFrames = tracedReferenceFrames(path, *record.videoTrackID, tools);
    }

    auto verdict = vet(*tools.translations, report, fileName, tools.appName);
    if (!verdict.accepted && result.finished && !isFromFfmpeg(text) && !runsAsFfmpeg(tools)) {
        return {.toolProblem = ProbeToolProblem::Broken};
    }
    Inspection inspection{.alerts = std::move(verdict.alerts)};
    if (!verdict.accepted) return inspection;
    if (Fennimar::contains(record.demuxer, "mp4") && partsOfMp4(path) > 1) {
        inspection.alerts.push_back(cutMovieAlert(*tools.translations, fileName));
    }
    record.fileName = fileName;
    record.fileURL = path;
    record.identity = identity;
    record.fileSize = Fennimar::fileSize(path);
    inspection.record = std::move(record);
    return inspection;
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
    try {
        return inspectFileAt(path, options, tools);
    } catch (const std::exception& failure) {
        // One file's trouble is not the program's.
        vn_log_level(LogError, "Error: %@ could not be inspected: %@", fileName, failure.what());
        return {.alerts = {invalidFileAlert(translations, fileName, tools.appName)}};
    }
}

std::int32_t durationOfFile(const std::filesystem::path& url, const ProbeTools& tools) {
    const auto path = Fennimar::absolutePath(url);
    if (!isFile(path)) return -1;
    const auto mark = freshMark();
    const auto result = runProbe(path, mark, tools);
    return durationInReport(reportOf(result, path, mark));
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

std::string versionInOutput(std::string_view output) {
    constexpr std::string_view kStart = "ffmpeg version ";
    if (!output.starts_with(kStart)) return {};
    output.remove_prefix(kStart.size());
    return std::string(output.substr(0, output.find_first_of(" \r\n")));
}

std::optional<int> majorVersion(std::string_view version) {
    if (version.starts_with('n')) version.remove_prefix(1);  // as the project's own tags do
    if (version.empty() || version.front() < '0' || version.front() > '9') return std::nullopt;
    return Fennimar::leadingInteger(version);
}

ConverterVersion::ConverterVersion(ProcessLauncher& launcher, std::filesystem::path ffmpeg)
    : launcher_(launcher),
      ffmpeg_(std::move(ffmpeg)) {}

const std::string& ConverterVersion::get() {
    std::call_once(asked_, [this] {
        const auto result = launcher_.run({.executable = ffmpeg_, .arguments = {"-version"}});
        if (result.finished) version_ = versionInOutput(result.finished->output);
    });
    return version_;
}

}  // namespace reelvane
