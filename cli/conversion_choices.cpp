#include "cli/conversion_choices.h"

#include <system_error>
#include <utility>

#include "app/destinations.h"
#include "app/preference_keys.h"
#include "app/settings_reader.h"
#include "cli/input_check.h"
#include "cli/saved_destinations.h"
#include "conversion/subtitle_arguments.h"
#include "support/make_string.h"
#include "support/preference_text.h"
#include "support/preferences.h"
#include "support/strings.h"

namespace reelvane {

ConversionChoices conversionChoices(const ConversionOptions& options,
                                    const Preferences& preferences, FolderAccess& folderAccess) {
    RunChoices choices{.audioTrackIndex = options.audioTrackIndex, .unattended = true};
    std::error_code ignored;
    if (options.toFolder) {
        const auto folder = absolutePath(*options.toFolder);
        if (!std::filesystem::is_directory(folder, ignored)) {
            return {.problem = makeString(
                        "There is no folder '%@' to write to. Please make it first, or name "
                        "another one.",
                        Fennimar::validUtf8(*options.toFolder))};
        }
        choices.destinationFolder = folder;
    }
    if (options.toSaved) {
        auto saved = folderSavedAs(preferences, folderAccess, *options.toSaved);
        if (!saved.folder) return {.problem = std::move(saved.problem)};
        choices.destinationFolder = *saved.folder;
    }
    if (options.subtitleFile) {
        const auto file = absolutePath(*options.subtitleFile);
        if (!std::filesystem::is_regular_file(file, ignored)) {
            return {.problem = makeString(
                        "There is no subtitle file '%@'. Please check the name and the folder.",
                        Fennimar::validUtf8(*options.subtitleFile))};
        }
        const bool findsEncoding = findsSubtitleEncoding(readConversionSettings(preferences));
        auto problem =
            subtitleProblem({.given = *options.subtitleFile, .path = file}, findsEncoding);
        if (!problem.empty()) return {.problem = std::move(problem)};
        choices.subtitleFile = file;
    }
    return {.choices = std::move(choices)};
}

void setUnattendedPreferences(Preferences& preferences) {
    preferences.setForThisRun(kAutoAddKey, preferenceText(1));
    // The program ends when all is done, not when the queue happens to be empty.
    preferences.setForThisRun(kQuitAfterConversionKey, preferenceText(0));
    if (!preferences.isSetForThisRun(kDefaultDestinationKey)) {
        preferences.setForThisRun(kDefaultDestinationKey,
                                  preferenceText(static_cast<int>(kNextToSourceDestination)));
    }
}

}  // namespace reelvane
