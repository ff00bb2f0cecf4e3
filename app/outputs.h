#pragma once

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "conversion/output_lease.h"
#include "support/errands.h"
#include "support/ports/dispatcher.h"

namespace reelvane {

class Vantor;

/// The paths that jobs in the list will write, and those that they read. A promised path is a taken
/// one, so that two movies of one name never overwrite each other. Any thread: what asks a disk is
/// called in the background, and a disk that does not answer holds up nobody else. A look-up costs
/// the same whatever the length of the list.
class OutputNames {
public:
    /// `folder` and the input's name with the output's extension, cut to what a file system takes,
    /// and made unique: nothing lies there and no job was promised it. It is promised from now on.
    /// A number that was taken is not looked at again until a promise is released. Asks the disk.
    [[nodiscard]] std::filesystem::path takeFreePath(const std::filesystem::path& folder,
                                                     std::string_view inputName,
                                                     std::string_view extension);

    /// Each promise must be released once.
    void promise(const std::filesystem::path& path);
    /// False, and nothing is promised, when it is already.
    [[nodiscard]] bool promiseIfFree(const std::filesystem::path& path);
    void release(const std::filesystem::path& path);

private:
    [[nodiscard]] static std::string keyOf(const std::filesystem::path& path);
    [[nodiscard]] std::uint64_t firstNumberFor(const std::string& key) const;

    mutable std::mutex mutex_;                       ///< never held while a disk is asked
    std::unordered_map<std::string, int> promises_;  ///< how many jobs hold each
    /// The number that was last found for a name, where the name itself was taken.
    std::unordered_map<std::string, std::uint64_t> numbers_;
};

/// Files that are being deleted in the background, where a disk that does not answer holds nobody
/// up. Main thread only.
class FileRemovals {
public:
    explicit FileRemovals(Vantor& vantor);

    /// Runs the deletion in the background and `then` on the main thread.
    void remove(Work deletion, Work then);
    /// The program ends, and its main loop with it: all that is not yet known to be deleted is
    /// deleted before this returns, and whatever comes later is deleted at once.
    void finish();

private:
    struct Removal {
        Work deletion{};
        Work then{};
    };
    void deleted(std::uint64_t number);

    std::map<std::uint64_t, Removal> underWay_;
    std::uint64_t last_ = 0;
    bool finishing_ = false;
    Errands errands_;
};

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
