#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "cli/commands.h"
#include "media/probe.h"

namespace reelvane {

/// Checks, probes and vets one movie here and now. A report that cannot be read refuses the file; a
/// problem with the tool comes with the one alert that tells it.
[[nodiscard]] Inspection inspectFile(const CommandContext& context, const std::string& given);

/// The index of the audio entry that would be taken; absent when there is none.
[[nodiscard]] std::optional<std::size_t> bestAudioOf(const CommandContext& context,
                                                     const MKVFileInfo& record);

}  // namespace reelvane
