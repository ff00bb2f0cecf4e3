#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "conversion/conversion_job.h"
#include "conversion/conversion_settings.h"
#include "support/ports/notifications.h"

namespace reelvane {

/// What is left of a job when its run has ended; the job itself may be gone.
struct EndedRun {
    std::string fileName{};
    std::filesystem::path output{};
    bool failed = false;
    std::string warning{};  ///< what to tell of an output instead of plain success; or empty
};

/// What the user is told at the end of a run, in his language.
[[nodiscard]] Notification endNotification(const Translations& translations,
                                           std::string_view appName, const EndedRun& run);

/// Waits until the device has the file; false when it could not be written there after all.
[[nodiscard]] bool isOnDisk(const std::filesystem::path& file);

/// What follows the end of every run: the next job, the notification, the counters, and quitting
/// where that is due.
void followUp(Vantor& vantor, ConversionJob::Controller& controller, const EndedRun& run);

/// Starts the next job unless one runs.
void startNextJobIfIdle(ConversionJob::Controller& controller);

}  // namespace reelvane
