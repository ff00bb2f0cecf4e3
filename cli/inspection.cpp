#include "cli/inspection.h"

#include <algorithm>
#include <stdexcept>

#include "app/preference_keys.h"
#include "app/settings_reader.h"
#include "cli/input_check.h"
#include "media/languages.h"
#include "support/make_string.h"
#include "support/ports/folder_access.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/preferences.h"
#include "support/strings.h"

namespace reelvane {
namespace {

ProbeTools probeTools(const CommandContext& context) {
    const auto granted = context.folderAccess.grantedFolders();
    const bool unlimited = std::ranges::find(granted, std::filesystem::path("/")) != granted.end();
    return {.launcher = &context.processLauncher,
            .ffmpeg = context.mainBundle.pathForResource("ffmpeg"),
            .appName = appName(context.mainBundle),
            .sandboxed = !unlimited};
}

}  // namespace

std::string appName(const MainBundle& mainBundle) {
    return mainBundle.infoValue("Name").value_or("Reelvane");
}

Inspection inspectFile(const CommandContext& context, const std::string& given) {
    const auto tools = probeTools(context);
    const InputFile file{.given = given, .path = absolutePath(given)};
    if (auto missing = missingFileAlert(file, tools.appName)) {
        return {.alerts = {*std::move(missing)}};
    }
    try {
        return initWithURL(file.path, readProbeOptions(context.preferences), tools);
    } catch (const std::out_of_range&) {
        return {.alerts = {{.title = tools.appName,
                            .message = makeString(
                                "What ffmpeg reports of the file '%@' cannot be read, so the file "
                                "cannot be converted. It may be damaged.",
                                Fennimar::validUtf8(given)),
                            .button = "OK"}}};
    }
}

std::string toolProblemOf(const CommandContext& context, ProbeToolProblem problem) {
    return toolProblemText(problem, context.mainBundle.pathForResource("ffmpeg"));
}

std::optional<std::size_t> bestAudioOf(const CommandContext& context, const MKVFileInfo& record) {
    return bestLanguage(record.audioTrackInformation,
                        context.preferences.defaultInt(kDefaultAudioKey),
                        preferredLanguages3Letter(context.host.preferredLanguages()));
}

}  // namespace reelvane
