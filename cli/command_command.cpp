#include <algorithm>

#include "app/destinations.h"
#include "app/outputs.h"
#include "app/preference_table.h"
#include "app/settings_reader.h"
#include "app/track_choices.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/convert_command.h"
#include "cli/destinations_command.h"
#include "cli/inspect_command.h"
#include "cli/json_lines.h"
#include "cli/text_reporter.h"
#include "conversion/command_builder.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/preference_text.h"
#include "support/preferences.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

/// Where the result would go, by the same rules as a conversion's.
FolderAnswer destinationFolder(const CommandContext& context, const RunChoices& choices,
                               const MKVFileInfo& record) {
    if (choices.destinationFolder) return {.folder = choices.destinationFolder};
    using Kind = DestinationChoice::Kind;
    const auto row = static_cast<std::size_t>(get(context.preferences, kDefaultDestination));
    const auto saved = savedDestinations(context.preferences);
    const auto choice = destinationOfRow(saved, row).value_or(DestinationChoice());
    if (choice.kind == Kind::NextToSource) return {.folder = record.fileURL.parent_path()};
    if (choice.kind == Kind::SavedFolder) {
        return folderOf(*std::ranges::find(saved, choice.folder, &SavedDestination::bookmark),
                        context.folderAccess);
    }
    return {.problem = "No destination could be chosen. Please name one with --to."};
}

/// As the launch does that precedes a conversion of the command line, but the store is left as it
/// is.
void correctForThisRun(Preferences& preferences) {
    for (const auto* const preference : {&kExternalSubtitleEncoding, &kCustomUnknownHandling}) {
        preferences.setForThisRun(preference->key, preferenceText(get(preferences, *preference)));
    }
    correctMenuValues(preferences);
}

PlannedCommand commandFor(const CommandContext& context, const RunChoices& choices,
                          MKVFileInfo record) {
    if (choices.audioTrackIndex) {
        if (auto problem = audioChoiceProblem(record, *choices.audioTrackIndex)) {
            return {.problem = *std::move(problem)};
        }
    }
    const auto destination = destinationFolder(context, choices, record);
    if (!destination.folder) return {.problem = destination.problem};
    record.destinationURL = OutputNames().takeFreePath(*destination.folder, record.fileName,
                                                       outputExtension(context.preferences));
    if (choices.subtitleFile) {
        setSubtitle(record, chooseSubtitle(kUntranslated, {*choices.subtitleFile},
                                           UnknownEncoding::LeavesOut)
                                .subtitle);
    }

    const auto track =
        choices.audioTrackIndex ? choices.audioTrackIndex : bestAudioOf(context, record);
    return plannedCommand(kUntranslated, record, track.value_or(0),
                          readConversionSettings(context.preferences),
                          docDirAsItStands(context.host, context.mainBundle));
}

}  // namespace

int runCommand(const CommandContext& context, const CommandRequest& request) {
    auto& console = context.console;
    setUnattendedPreferences(context.preferences);
    correctForThisRun(context.preferences);
    const auto chosen =
        conversionChoices(request.options, context.preferences, context.folderAccess);
    if (!chosen.problem.empty()) {
        console.error(chosen.problem);
        return kExitFailure;
    }
    const auto inspection = inspectFile(context, request.file);
    // Warnings, too, go where they do not mix with the list.
    const auto name = printable(request.file);
    for (const auto& alert : inspection.alerts) {
        console.error(inspection.record ? warningLine(name, alert.message)
                                        : errorText(name, "refused", alert.message));
    }
    if (!inspection.record) return kExitFailure;
    const auto answer = commandFor(context, chosen.choices, *inspection.record);
    if (!answer.problem.empty()) {
        console.error(answer.problem);
        return kExitFailure;
    }
    console.line(request.json ? argumentsLine(answer.arguments)
                              : shellQuotedLine(answer.arguments));
    return console.isClosed() ? kExitFailure : kExitSuccess;
}

}  // namespace reelvane
