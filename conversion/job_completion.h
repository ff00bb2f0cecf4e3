#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "conversion/conversion_job.h"
#include "conversion/conversion_settings.h"
#include "conversion/output_proof.h"
#include "support/ports/notifications.h"

namespace reelvane {

/// What is left of a job when its run has ended; the job itself may be gone.
struct EndedRun {
    std::string fileName{};
    std::filesystem::path output{};
    bool failed = false;
    std::string endsEarly{};  ///< what to tell of an output that is whole but too short; or empty
};

/// What the user is told at the end of a run, in his language.
[[nodiscard]] Notification endNotification(const Translations& translations,
                                           std::string_view appName, const EndedRun& run);

/// "%@ ended after %@ of %@: the source may be damaged."; empty for an output of full length.
[[nodiscard]] std::string endsEarlyText(const Translations& translations, std::string_view fileName,
                                        const OutputProof& proof,
                                        std::optional<int> runtimeSeconds);

/// Waits until the device has the file; false when it could not be written there after all.
[[nodiscard]] bool isOnDisk(const std::filesystem::path& file);

/// Removes a converted source as `autoRemoveType` says: 0 to the Trash, anything else for good.
void removeSource(Vantor& vantor, ConversionJob::Controller& controller,
                  const std::filesystem::path& source, int autoRemoveType);

/// What follows the end of every run: the next job, the notification, the counters, and quitting
/// when nothing converts and nothing has failed.
void followUp(Vantor& vantor, ConversionJob::Controller& controller,
              const ConversionSettings& settings, const EndedRun& run);

/// Starts the next job unless one runs.
void startNextJobIfIdle(ConversionJob::Controller& controller);

}  // namespace reelvane
