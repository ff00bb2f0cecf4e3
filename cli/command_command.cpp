#include "app/destinations.h"
#include "app/outputs.h"
#include "app/preference_table.h"
#include "app/settings_reader.h"
#include "app/track_choices.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/convert_command.h"
#include "cli/inspect_command.h"
#include "cli/json_lines.h"
#include "cli/settings_commands.h"
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

/// Where a conversion would keep its progress file: the documents folder, which it would make if
/// need be, or else the folder of the program's own data.
std::filesystem::path progressFolder(const CommandContext& context) {
    const auto folders = context.host.folders();
    return writableDocuments(folders.documents,
                             folders.applicationData / appName(context.mainBundle));
}

/// Where the result would go, by the same rules as a conversion's.
FolderAnswer destinationFolder(const CommandContext& context, const RunChoices& choices,
                               const MKVFileInfo& record) {
    if (choices.destinationFolder) return {.folder = choices.destinationFolder};
    const auto row = static_cast<std::size_t>(get(context.preferences, kDefaultDestination));
    if (row == kNextToSourceDestination) return {.folder = record.fileURL.parent_path()};
    const auto saved = savedDestinations(context.preferences);
    if (row >= kFirstFolderDestination && row < kFirstFolderDestination + saved.size()) {
        return folderOf(saved[row - kFirstFolderDestination], context.folderAccess);
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
                          readConversionSettings(context.preferences), progressFolder(context));
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
