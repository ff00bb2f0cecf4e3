#pragma once

#include <functional>
#include <string>
#include <vector>

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

}  // namespace reelvane
