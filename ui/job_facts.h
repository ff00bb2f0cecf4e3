#pragma once

#include <string>

#include "conversion/job_details.h"
#include "ui/ui_context.h"

namespace reelvane {

/// The tracks and the command of a job, by the preferences of this moment where it has not started.
[[nodiscard]] JobDetails detailsNow(const UiContext& context, const ConversionJob& job);

/// True when the job has been run, or can be.
[[nodiscard]] bool hasCommandLine(const ConversionJob& job);
/// What a shell takes to run the conversion by hand, byte for byte; empty when there is no command.
[[nodiscard]] std::string commandLine(const UiContext& context, const JobDetails& details);

/// Puts text onto the clipboard that need not be UTF-8.
void copyBytes(const std::string& bytes);

}  // namespace reelvane
