#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "cli/command_context.h"
#include "media/probe.h"

namespace reelvane {

/// The name under which the program speaks to the user.
[[nodiscard]] std::string appName(const MainBundle& mainBundle);

/// Probes and vets one file here and now. A report that cannot be read refuses the file.
[[nodiscard]] Inspection inspectFile(const CommandContext& context, const std::string& given);

/// The sentence on a missing or broken ffmpeg.
[[nodiscard]] std::string toolProblemOf(const CommandContext& context, ProbeToolProblem problem);

/// The index of the audio entry that would be taken; absent when there is none.
[[nodiscard]] std::optional<std::size_t> bestAudioOf(const CommandContext& context,
                                                     const MKVFileInfo& record);

}  // namespace reelvane
