#pragma once

#include <functional>
#include <string>

#include "app/settings_reader.h"
#include "cli/arguments.h"

namespace reelvane {

class Console;
class FolderAccess;
class Preferences;
class StderrAlerts;
class Vantor;

/// The main loop, as `convert` needs it.
struct ConvertLoop {
    std::function<void(int exitStatus)> quit{};  ///< ends `run`; the last call decides
    std::function<int()> run{};                  ///< runs until `quit` and answers its status
};

/// Converts the files and answers the exit status. Runs the main loop until nothing is left, or
/// until somebody else ends it with a status above 1: then what is unfinished is removed. The
/// preferences of an unattended run have to be set before.
[[nodiscard]] int runConvert(Vantor& vantor, Console& console, StderrAlerts& alerts,
                             const ConvertLoop& loop, const ConvertRequest& request);

/// What the options say to the core, or the one sentence on why they cannot be followed.
struct ConversionChoices {
    RunChoices choices{};
    std::string problem{};  ///< empty: none
};

/// Looks up what the options name: folders and files have to be there.
[[nodiscard]] ConversionChoices conversionChoices(const ConversionOptions& options,
                                                  const Preferences& preferences,
                                                  FolderAccess& folderAccess);

/// What holds for a conversion that nobody watches, unless it was set for this run: files are
/// queued at once, and the results go next to the sources.
void setUnattendedPreferences(Preferences& preferences);

}  // namespace reelvane
