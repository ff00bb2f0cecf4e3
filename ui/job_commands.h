#pragma once

#include <functional>
#include <string>
#include <vector>

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
    void copyCommandLine(const ConversionJob& job) const;
    /// False: the user does not want to throw the work of a running conversion away. A job that
    /// leaves the list while the question stands is taken out of `jobs`.
    [[nodiscard]] bool confirmRemoval(std::vector<ConversionJob*>& jobs);
    void remove(const std::vector<ConversionJob*>& jobs);

private:
    UiContext context_;
    OpenDetails openDetails_;
};

}  // namespace reelvane
