#pragma once

#include <mutex>
#include <optional>

#include "conversion/start_facts.h"
#include "media/mkv_file_info.h"

namespace reelvane {

/// The part of one start that is done in the background, between a job that may leave meanwhile and
/// disks that may not answer. Whatever it makes for a job that has left goes again. Shared by the
/// job and the work in the background.
class StartAttempt {
public:
    /// The record's output path is held until `run` is over, so that nobody else gets it before.
    StartAttempt(MKVFileInfo record, OutputPlaces places);

    // In the background, each once:

    void run();
    /// Takes back what `run` has made, unless that was taken before.
    void undo();

    // On the main thread:

    /// True when the job has left.
    [[nodiscard]] bool isAbandoned() const;
    /// What `run` has found, for the job to keep; absent before it is over and once it was taken.
    [[nodiscard]] std::optional<StartFacts> take();
    /// The job leaves. What `run` has found is the caller's to undo; where it is not over yet it
    /// does so itself.
    [[nodiscard]] std::optional<StartFacts> abandon();

private:
    void undo(const StartFacts& facts) const;

    MKVFileInfo record_;
    OutputPlaces places_;
    mutable std::mutex mutex_;
    bool abandoned_ = false;           ///< guarded by `mutex_`
    std::optional<StartFacts> facts_;  ///< guarded by `mutex_`
};

}  // namespace reelvane
