#pragma once

#include <string>

#include "app/run_choices.h"
#include "cli/arguments.h"

namespace reelvane {

class FolderAccess;
class Preferences;

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
