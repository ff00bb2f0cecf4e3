#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "conversion/conversion_settings.h"
#include "media/probe.h"
#include "media/probe_report.h"

namespace reelvane {

class FolderAccess;
class MainBundle;
class Preferences;
class ProcessLauncher;
class Translations;

/// The preferences of one conversion, as they stand now. Any thread.
[[nodiscard]] ConversionSettings readConversionSettings(const Preferences& preferences);

/// The preferences of one probe, as they stand now. Any thread.
[[nodiscard]] ProbeOptions readProbeOptions(const Preferences& preferences);

/// The extension of the outputs, without a full stop.
[[nodiscard]] std::string_view outputExtension(const Preferences& preferences);

/// What the caller fixes for every file of this run, beside the preferences. The window fixes
/// nothing; the command line passes its options on.
struct RunChoices {
    std::optional<std::filesystem::path> destinationFolder{};  ///< instead of the menu's choice
    std::optional<std::size_t> audioTrackIndex{};              ///< instead of the best language
    std::optional<std::filesystem::path> subtitleFile{};       ///< instead of the paired one
    /// Nobody can answer the file sheet: a file that does not become a job at once (the save panel
    /// was declined, the menu points nowhere) is told as refused, and the next one is taken.
    bool unattended = false;
};

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

/// What a probe works with: the bundle's ffmpeg, and whether a sandbox limits access.
[[nodiscard]] ProbeTools probeTools(ProcessLauncher& launcher, const MainBundle& mainBundle,
                                    FolderAccess& folderAccess, std::string appName,
                                    const Translations& translations);

}  // namespace reelvane
