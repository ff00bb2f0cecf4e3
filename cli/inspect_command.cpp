#include "cli/inspect_command.h"

#include <array>
#include <utility>

#include "app/preference_table.h"
#include "app/settings_reader.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/input_check.h"
#include "cli/json_lines.h"
#include "cli/text_reporter.h"
#include "conversion/output_proof.h"
#include "conversion/stream_plan.h"
#include "media/languages.h"
#include "mp4/mp4_reader.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/preferences.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::size_t kIndent = 4;
constexpr auto kKindWords = std::to_array<std::string_view>({"Video", "Audio", "Text", "Other"});

std::string acceptedText(const InspectionFacts& facts, std::size_t columns) {
    const auto& record = facts.record;
    auto text = printable(facts.file) + "\n" +
                wrapped(printable(record.informationString), "  ", columns, kIndent);
    if (record.videoTrackID) {
        text += makeString("\n    Video    #%i: %@ %@", *record.videoTrackID, record.videoCodec,
                           record.resolution);
    }
    for (std::size_t i = 0; i < record.audioTrackInformation.size(); ++i) {
        const auto& track = record.audioTrackInformation[i];
        text += makeString("\n    Audio %2lu %@", i, printable(reelvane::text(track)));
        if (track.hz > 0) text += makeString(", %i Hz", track.hz);
        if (!track.isKnown()) {
            text += " (left out: ffmpeg does not know its format)";
        } else if (facts.bestAudio == i) {
            text += " (will be converted)";
        }
    }
    for (const auto track : record.subtitleTrackIDs) {
        text += makeString("\n    Subtitle #%i: text", track);
        if (!facts.subtitlesLeftOut.empty()) text += makeString(" (%@)", facts.subtitlesLeftOut);
    }
    for (const auto& alert : facts.alerts) {
        text += "\n" + wrapped("Warning: " + printable(alert.message), " ", columns, kIndent);
    }
    return text;
}

/// As a conversion would decide: where there is no sound nothing but the picture is taken.
std::string_view subtitlesLeftOut(const CommandContext& context, const MKVFileInfo& record,
                                  std::optional<std::size_t> audio) {
    if (!audio || !record.audioTrackInformation[*audio].isKnown()) {
        return "left out: the movie has no sound";
    }
    const bool taken = mapsEmbeddedSubtitles(record, readConversionSettings(context.preferences));
    return taken ? "" : "left out, as the preferences say";
}

std::string refusedText(const std::string& file, const std::vector<VettingAlert>& alerts,
                        std::size_t columns) {
    auto text = printable(file) + ": refused";
    for (const auto& alert : alerts) {
        text += "\n" + wrapped(printable(alert.message), " ", columns, kIndent);
    }
    return text;
}

VettingAlert plainAlert(const std::string& title, std::string message) {
    return {.title = title, .message = std::move(message), .button = "OK"};
}

std::string trackText(const Mp4Track& track) {
    auto text = makeString("\n    %-5s #%u: %@, %@, %.0f s",
                           kKindWords.at(static_cast<std::size_t>(track.kind)), track.trackID,
                           printable(track.codec), track.language, track.seconds);
    if (!track.enabled) text += ", off";
    if (track.alternateGroup != 0) text += makeString(", group %u", track.alternateGroup);
    return text;
}

std::string verifiedText(const std::string& file, const Mp4Reading& reading, std::uint64_t bytes) {
    const auto name = printable(file);
    if (!reading.movie) {
        return makeString("%@: %@: it %@", name, reading.uncheckable ? "not checked" : "broken",
                          reading.problem);
    }
    const auto& movie = *reading.movie;
    auto text = makeString("%@: whole: %@", name,
                           contentText(kUntranslated, movie.seconds, movie.tracks.size(), bytes));
    for (const auto& track : movie.tracks) text += trackText(track);
    return text;
}

}  // namespace

Inspection inspectFile(const CommandContext& context, const std::string& given) {
    const auto tools = probeTools(context.processLauncher, context.mainBundle, context.folderAccess,
                                  appName(context.mainBundle), kUntranslated);
    const InputFile file{.given = given, .path = absolutePath(given)};
    if (auto problem = movieProblem(file)) {
        return {.alerts = {plainAlert(tools.appName, *std::move(problem))}};
    }
    auto inspection = initWithURL(file.path, readProbeOptions(context.preferences), tools);
    if (inspection.toolProblem != ProbeToolProblem::None) {
        inspection.alerts = {
            plainAlert(tools.appName,
                       toolProblemText(kUntranslated, inspection.toolProblem, context.mainBundle))};
    }
    return inspection;
}

std::optional<std::size_t> bestAudioOf(const CommandContext& context, const MKVFileInfo& record) {
    return bestLanguage(record.audioTrackInformation, get(context.preferences, kDefaultAudio),
                        preferredLanguages3Letter(context.host.preferredLanguages()));
}

int runInspect(const CommandContext& context, const InspectRequest& request) {
    auto& console = context.console;
    int status = kExitSuccess;
    for (const auto& file : request.files) {
        const auto inspection = inspectFile(context, file);
        const auto& alerts = inspection.alerts;
        if (inspection.toolProblem != ProbeToolProblem::None && !request.json) {
            // No other file fares better, and one sentence is enough.
            console.error(alerts.front().message);
            return kExitFailure;
        }
        const auto columns = Console::wrapColumns();
        if (inspection.record) {
            const auto audio = bestAudioOf(context, *inspection.record);
            const InspectionFacts facts{
                .file = file,
                .record = *inspection.record,
                .bestAudio = audio,
                .alerts = alerts,
                .subtitlesLeftOut = subtitlesLeftOut(context, *inspection.record, audio)};
            console.line(request.json ? acceptedLine(facts) : acceptedText(facts, columns));
        } else {
            status = kExitFailure;
            console.line(request.json ? refusedLine(file, alerts)
                                      : refusedText(file, alerts, columns));
        }
        if (console.isClosed()) return kExitFailure;
    }
    return status;
}

int runVerify(const CommandContext& context, const VerifyRequest& request) {
    auto& console = context.console;
    int status = kExitSuccess;
    for (const auto& file : request.files) {
        const auto reading = readMp4(file);
        if (!reading.movie) status = kExitFailure;
        const auto bytes = Fennimar::fileSize(file);
        console.line(request.json ? verifiedLine(file, reading, bytes)
                                  : verifiedText(file, reading, bytes));
        if (console.isClosed()) return kExitFailure;
    }
    return status;
}

}  // namespace reelvane
