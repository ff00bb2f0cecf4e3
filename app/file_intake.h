#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "media/mkv_file_info.h"
#include "media/vetting.h"
#include "support/observable.h"

namespace reelvane {

class ConversionJob;

/// Takes files in, probes them one at a time in the background and turns them into jobs.
/// Main thread only. (Shape for both front ends; the full interface grows with the sheet's model.)
class FileIntake {
public:
    /// What the intake asks of the controller.
    class Owner {
    public:
        virtual ~Owner() = default;
        virtual void addJob(std::unique_ptr<ConversionJob> job) = 0;
    };

    void openFiles(const std::vector<std::filesystem::path>& paths);

    /// True while a file waits, is being probed or is shown for the user's choice.
    [[nodiscard]] bool isBusy() const;

    /// Told when a file was refused: its path and what the user was told.
    [[nodiscard]] Subscription observeRefusals(
        std::function<void(const std::filesystem::path&, const std::vector<VettingAlert>&)>
            refused);
    /// Told when isBusy() may have become false.
    [[nodiscard]] Subscription observeIdle(std::function<void()> idle);
};

}  // namespace reelvane
