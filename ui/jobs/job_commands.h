#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "conversion/conversion_settings.h"
#include "conversion/job_details.h"
#include "ui/ui_context.h"

namespace reelvane {

class ConversionJob;

/// What a user does to jobs of the list, whether by a row, a key or a menu. A job may be gone when
/// a command returns. Main thread only.
class JobCommands {
public:
    using OpenDetails = std::function<void(ConversionJob&)>;

    JobCommands(const UiContext& context, OpenDetails openDetails);

    /// Whichever applies; nothing when neither does.
    void pauseOrContinue(ConversionJob& job);
    [[nodiscard]] bool canPauseOrContinue(const ConversionJob& job) const;
    /// Shows the output, or with Shift the source, or explains a failure; details where there is
    /// nothing to reveal yet.
    void reveal(ConversionJob& job);
    void showSource(const ConversionJob& job) const;
    void openDetails(ConversionJob& job) { openDetails_(job); }
    /// What the last line of its row says of a job that has ended.
    [[nodiscard]] RowNote rowNote(const ConversionJob& job) const;
    void copyCommandLine(const ConversionJob& job) const;
    /// Takes them off the list; the user can have them back for a while.
    void remove(const std::vector<ConversionJob*>& jobs);

private:
    UiContext context_;
    OpenDetails openDetails_;
};

/// What a job's row and its menu offer in a state of the job.
struct JobControls {
    bool pauses = false;
    bool continues = false;  ///< or starts
    bool starts = false;     ///< for the first time
    bool reveals = false;    ///< by the arrow, which explains a failure
    bool explains = false;
    bool unfinished = false;
};

[[nodiscard]] constexpr JobControls jobControls(ConversionJobState state) {
    const auto number = static_cast<std::int32_t>(state);
    const bool reveals = StatusNotQueuedAndPausedValueTransformer::transformedValue(number) != 0;
    const bool unfinished = StatusNotFinishedValueTransformer::transformedValue(number) != 0;
    return {
        .pauses = StatusIsRunningValueTransformer::transformedValue(number) != 0,
        .continues = unfinished && StatusNotRunningValueTransformer::transformedValue(number) != 0,
        .starts = StatusIsQueuedValueTransformer::transformedValue(number) != 0,
        .reveals = reveals,
        .explains = reveals && state == ConversionJobState::Failed,
        .unfinished = unfinished};
}

/// The tracks and the command of a job, by the preferences of this moment where it has not started.
[[nodiscard]] JobDetails detailsNow(const UiContext& context, const ConversionJob& job);

/// True when the job has been run, or can be.
[[nodiscard]] bool hasCommandLine(const ConversionJob& job);
/// What a shell takes to run the conversion by hand, byte for byte; empty when there is no command.
[[nodiscard]] std::string commandLine(const UiContext& context, const JobDetails& details);

/// Puts text onto the clipboard that need not be UTF-8.
void copyBytes(const std::string& bytes);

}  // namespace reelvane
