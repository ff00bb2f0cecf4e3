#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "conversion/diagnosis.h"
#include "support/ports/notifications.h"

namespace reelvane {

class Translations;
class Vantor;

/// What a job tells its owner, who acts on it and shows what the user is to read.
struct JobEvent {
    enum class Kind {
        WentOn,         ///< it started, or goes on after a pause
        SourceMissing,  ///< it Failed before its run: the movie is gone, and the queue stands
        NoSpace,        ///< it is Queued as before, since its output would not fit
        StartRefused,   ///< it Failed before its run, and the queue goes on
        RunFinished,
        RunFailed,
        SourceDecided,  ///< after RunFinished: the source is gone, or is known to stay
        Explained       ///< the user has asked why it failed
    };
    Kind kind = Kind::WentOn;
    std::string title{};                ///< of the alert that tells the user, in his language
    std::string text{};                 ///< of it; empty: there is none
    std::optional<FailedRun> report{};  ///< the alert offers to send this to the support
    std::optional<Notification> notification{};
};

/// Shows the alert of an event, if it has one. Blocks until the user has answered.
void showAlert(Vantor& vantor, const JobEvent& event);

/// A run that is over.
struct EndedRun {
    std::string fileName{};
    std::filesystem::path output{};
    bool failed = false;
    std::string warning{};  ///< what to tell of an output instead of plain success; or empty
};

/// What the user is told at the end of a run, in his language.
[[nodiscard]] Notification endNotification(const Translations& translations,
                                           std::string_view appName, const EndedRun& run);

}  // namespace reelvane
