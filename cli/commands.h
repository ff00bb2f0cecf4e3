#pragma once

#include "cli/arguments.h"

namespace reelvane {

class Console;
class FolderAccess;
class Host;
class MainBundle;
class Preferences;
class PreferencesStore;
class ProcessLauncher;

/// What the commands that need no main loop work with. They make nothing on disk but what they are
/// asked to.
struct CommandContext {
    Console& console;
    PreferencesStore& store;
    Preferences& preferences;
    FolderAccess& folderAccess;
    Host& host;
    MainBundle& mainBundle;
    ProcessLauncher& processLauncher;
};

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
