#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace reelvane {

class Preferences;

/// What a launch puts right in the stored preferences, before any job exists. Main thread only.
/// A value that was set for this run only is never the reason to write to the store.

/// The key that counts the uses of one version of the program.
[[nodiscard]] std::string versionUsagesKey(std::string_view version);

/// The separator of the encoding menu becomes "None"; an unknown codec is handled as 0 or 1.
void correctMenuValues(Preferences& preferences);

/// True for a frequent user of the compatible style who has not seen the speed hint.
[[nodiscard]] bool speedHintIsDue(const Preferences& preferences, std::string_view version);

/// Once per user: the destination menu got one more fixed item, so a stored index moves up by one.
void upgradeDestinationIndex(Preferences& preferences);

/// Brings `DefaultDestination` back into the menu with this many saved folders.
void clampDefaultDestination(Preferences& preferences, std::size_t folders);

}  // namespace reelvane
