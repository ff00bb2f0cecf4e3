#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/inspection.h"
#include "cli/json_lines.h"
#include "cli/text_lines.h"
#include "support/make_string.h"
#include "support/utf8.h"

namespace reelvane {
namespace {

constexpr std::size_t kIndent = 4;

std::string acceptedText(const InspectionFacts& facts, std::size_t columns) {
    const auto& record = facts.record;
    auto text = printable(facts.file) + "\n" +
                wrapped(printable(record.informationString), "  ", columns, kIndent);
    if (record.videoTrackID) {
        text += makeString("\n    Video    #%i: %@ %@", *record.videoTrackID, record.videoCodec,
                           record.resolution);
    }
    for (std::size_t i = 0; i < record.audioTrackInformation.size(); ++i) {
        const auto& entry = record.audioTrackInformation[i];
        text += makeString("\n    Audio %2lu %@", i, printable(entry.text));
        if (entry.hz > 0) text += makeString(", %i Hz", entry.hz);
        if (hasUnknownCodec(entry.text)) {
            text += " (left out: ffmpeg does not know its format)";
        } else if (facts.bestAudio == i) {
            text += " (will be converted)";
        }
    }
    for (const auto track : record.subtitleTrackIDs) {
        text += makeString("\n    Subtitle #%i: text", track);
    }
    for (const auto& alert : facts.alerts) {
        text += "\n" + wrapped("Warning: " + printable(alert.message), " ", columns, kIndent);
    }
    return text;
}

std::string refusedText(const std::string& file, const std::vector<VettingAlert>& alerts,
                        std::size_t columns) {
    auto text = printable(file) + ": refused";
    for (const auto& alert : alerts) {
        text += "\n" + wrapped(printable(alert.message), " ", columns, kIndent);
    }
    return text;
}

}  // namespace

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
            const InspectionFacts facts{.file = file,
                                        .record = *inspection.record,
                                        .bestAudio = bestAudioOf(context, *inspection.record),
                                        .alerts = alerts};
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

}  // namespace reelvane
