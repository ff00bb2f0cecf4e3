#include "cli/inspection.h"

#include <utility>

#include "app/preference_keys.h"
#include "app/probe_tools.h"
#include "app/settings_reader.h"
#include "cli/input_check.h"
#include "media/languages.h"
#include "support/make_string.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/preferences.h"
#include "support/strings.h"
#include "support/untranslated.h"

namespace reelvane {
namespace {

VettingAlert plainAlert(const std::string& title, std::string message) {
    return {.title = title, .message = std::move(message), .button = "OK"};
}

}  // namespace

std::string appName(const MainBundle& mainBundle) {
    return mainBundle.infoValue("Name").value_or("Reelvane");
}

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
    return bestLanguage(record.audioTrackInformation,
                        context.preferences.defaultInt(kDefaultAudioKey),
                        preferredLanguages3Letter(context.host.preferredLanguages()));
}

}  // namespace reelvane
