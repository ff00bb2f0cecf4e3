#include "ui/ffmpeg_version.h"

#include <utility>

#include "media/converter_version.h"
#include "media/probe.h"
#include "support/bundle.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

ProbeToolProblem problemOf(LaunchError error) {
    switch (error) {
        case LaunchError::NotFound:
            return ProbeToolProblem::Missing;
        case LaunchError::NoResources:
            return ProbeToolProblem::NoResources;
        default:
            return ProbeToolProblem::Broken;
    }
}

FFmpegVersion::Answer failed(const Vantor& vantor, ProbeToolProblem problem) {
    const auto& ports = vantor.ports();
    return {.problem = toolProblemText(ports.translations, problem, ports.mainBundle)};
}

}  // namespace

FFmpegVersion::FFmpegVersion(const Vantor& vantor, Told told)
    : vantor_(vantor),
      told_(std::move(told)) {
    auto launched = vantor.ports().processLauncher.launch(
        {.executable = resourceURL(vantor, "ffmpeg"), .arguments = {"-version"}}, *this);
    child_ = std::move(launched.child);
    if (child_ == nullptr) told_(failed(vantor, problemOf(launched.error)));
}

void FFmpegVersion::taskFinished(int exitStatus, std::string_view remainingOutput) {
    output_ += remainingOutput;
    child_.reset();
    auto version = exitStatus == 0 ? versionInOutput(output_) : std::string();
    told_(version.empty() ? failed(vantor_, ProbeToolProblem::Broken)
                          : Answer{.version = std::move(version)});
}

}  // namespace reelvane
