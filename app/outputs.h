#pragma once

#include <condition_variable>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "app/file_removals.h"
#include "app/output_names.h"
#include "conversion/output_lease.h"

namespace reelvane {

class Vantor;

/// Gives out the outputs of this program's conversions, keeps the notes in the preferences that let
/// the next start clear up after a crash, and deletes what is given back unfinished. Several
/// programs share the notes: each edits only its own. Any thread, unless it is said otherwise; the
/// lock is never held while a disk is asked.
class Outputs final : public OutputLease::Keeper {
public:
    Outputs(Vantor& vantor, std::shared_ptr<OutputNames> names);

    [[nodiscard]] bool begin(const std::shared_ptr<RunFiles>& files) override;
    void note(const RunFiles& files, const OwnFile& output, const OwnFile& progressFile) override;
    void made(const std::shared_ptr<RunFiles>& files) override;
    void giveBack(const std::shared_ptr<RunFiles>& files) override;
    void hold(const std::filesystem::path& path) override { names_->promise(path); }
    void release(const std::filesystem::path& path) override { names_->release(path); }
    [[nodiscard]] std::filesystem::path otherPath(const MKVFileInfo& record,
                                                  const std::filesystem::path& taken) override;

    /// The program ends: no more files are made, and what is unfinished is deleted before this
    /// returns, as far as the disks answer. Main thread.
    void finish();
    /// What should be gone and could not be deleted; the next start tries again.
    [[nodiscard]] std::vector<std::filesystem::path> leftBehind() const;

private:
    struct Begun {
        std::shared_ptr<RunFiles> files{};  // shared with the lease, and with those who delete
        std::filesystem::path output{};     ///< as it was noted last
        std::string note{};                 ///< as it is stored; empty: there is none
        bool making = true;
    };
    void settle(const std::shared_ptr<RunFiles>& files, bool gone);
    /// What is stuck is to be deleted by the next start, even where it reads as whole: a converter
    /// that is asked to end closes its file.
    void noteUnwanted(const std::shared_ptr<RunFiles>& files);
    void discardAll();

    Vantor& vantor_;
    // Shared with searches for a free name that may end after this.
    std::shared_ptr<OutputNames> names_;
    FileRemovals removals_;
    mutable std::mutex mutex_;  // guards what follows
    std::condition_variable made_;
    std::map<const RunFiles*, Begun> begun_;
    std::vector<std::filesystem::path> leftBehind_;
    bool finishing_ = false;
};

}  // namespace reelvane
