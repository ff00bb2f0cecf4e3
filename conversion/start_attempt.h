#pragma once

#include <mutex>
#include <optional>

#include "conversion/start_facts.h"
#include "media/mkv_file_info.h"

namespace reelvane {

/// The part of one start that is done in the background, between a job that may leave meanwhile and
/// disks that may not answer. Whatever it makes for a job that does not wait any more goes again.
/// Shared by the job and the work in the background.
class StartAttempt {
public:
    StartAttempt(MKVFileInfo record, OutputPlaces places);

    /// In the background, once.
    void run();

    // On the main thread:

    /// True when the job does not wait any more.
    [[nodiscard]] bool isAbandoned() const;
    /// What `run` has found; it must be over.
    [[nodiscard]] const StartFacts& facts() const { return *facts_; }
    /// The job does not wait any more. Where `run` was over first, what it has found: the caller
    /// clears it up. Else `run` does so itself.
    [[nodiscard]] std::optional<StartFacts> abandon();

private:
    MKVFileInfo record_;
    OutputPlaces places_;
    mutable std::mutex mutex_;
    bool abandoned_ = false;           ///< guarded by `mutex_`
    std::optional<StartFacts> facts_;  ///< guarded by `mutex_` until `run` is over
};

}  // namespace reelvane
