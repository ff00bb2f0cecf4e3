#pragma once

#include "cli/arguments.h"
#include "cli/command_context.h"

namespace reelvane {

/// The commands that run to their end without a main loop. Each answers the exit status.

/// Probes and vets the files, in order, and prints what they hold.
[[nodiscard]] int runInspect(const CommandContext& context, const InspectRequest& request);
/// Reads MP4 files to see whether they are whole, in order, and prints their tracks.
[[nodiscard]] int runVerify(const CommandContext& context, const VerifyRequest& request);
/// Prints the argument list of a conversion that is not made.
[[nodiscard]] int runCommand(const CommandContext& context, const CommandRequest& request);
[[nodiscard]] int runPreferences(const CommandContext& context, const PreferencesRequest& request);
[[nodiscard]] int runDestinations(const CommandContext& context,
                                  const DestinationsRequest& request);

}  // namespace reelvane
