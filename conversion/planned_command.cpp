#include "conversion/planned_command.h"

#include <utility>

#include "conversion/audio_method.h"
#include "conversion/command_builder.h"
#include "conversion/progress_file.h"
#include "conversion/subtitle_arguments.h"

namespace reelvane {

PlannedCommand plannedCommand(const Translations& translations, const MKVFileInfo& file,
                              std::size_t audioTrackIndex, const ConversionSettings& preferences,
                              const std::filesystem::path& progressFolder) {
    auto problem = audioMethodProblem(translations, file, audioTrackIndex, preferences.audio);
    if (!problem.empty()) return {.problem = std::move(problem)};
    return {.arguments =
                buildArguments({.file = file,
                                .audioTrackIndex = audioTrackIndex,
                                .settings = withWholeSubtitles(file, preferences),
                                .progressFile = freeProgressPath(progressFolder, file.fileName)})};
}

}  // namespace reelvane
