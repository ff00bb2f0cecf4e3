#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include "media/mkv_file_info.h"
#include "support/held_file.h"

namespace reelvane {

/// What one run writes: its output and its progress file, made by this program and held open. The
/// output is kept or discarded, and several threads may ask for either: the first decides. What
/// asks the disk says so, and is called in the background. Any thread.
class RunFiles {
public:
    /// Where the result is to lie.
    [[nodiscard]] const std::filesystem::path& destination() const { return destination_; }
    /// Where the converter writes: the destination, or a name beside a file that is to be replaced.
    [[nodiscard]] const std::filesystem::path& workPath() const { return work_; }
    [[nodiscard]] const std::filesystem::path& progressPath() const { return progressPath_; }
    [[nodiscard]] int progressDescriptor() const { return progress_.descriptor(); }
    /// Opens the very output that was made, whatever lies at its path by now: what is to be read,
    /// patched and proven.
    [[nodiscard]] std::filesystem::path heldPath() const { return output_.heldPath(); }

    /// False: the output was deleted, or another file was put in its place. Asks the disk.
    [[nodiscard]] bool isOutputThere() const { return output_.whereabouts().has_value(); }

    enum class Keeping {
        Kept,
        Gone,        ///< it was deleted, or another file was put in its place
        Unreplaced,  ///< the old file could not be replaced and is as it was; errno says why
        Unwanted     ///< it was discarded before
    };
    /// The output is proven: it takes its place, and is the user's from now on. Asks the disk.
    [[nodiscard]] Keeping keep();
    /// Where the output lies that was kept: its destination, unless somebody has moved it.
    [[nodiscard]] const std::filesystem::path& keptPath() const { return output_.path(); }
    /// Deletes what was made and not kept. False: something could not be deleted. Asks the disk.
    [[nodiscard]] bool discard();
    /// What a failed `discard` has left. Asks the disk.
    [[nodiscard]] std::vector<std::filesystem::path> leftovers() const;

private:
    friend class OutputLease;
    enum class State { Unfinished, Keeping, Kept, Discarded };

    std::filesystem::path destination_;
    std::filesystem::path work_;
    std::filesystem::path progressPath_;
    HeldFile output_;
    HeldFile progress_;
    std::atomic<State> state_ = State::Unfinished;
};

/// Owns the files of one run from their making to the run's end. What was not kept by then goes
/// with the lease: the very files that were made are deleted, then the note on disk about them is
/// forgotten, then their name is free again. Move-only.
///
/// Where the user agreed to replace something, the converter writes beside it, and the old file is
/// replaced in one step when the new one has been proven.
class OutputLease {
public:
    class Keeper;
    /// Why there is no lease.
    enum class Refusal {
        None,
        NoProgressFile,  ///< no folder takes one
        NoOutputFile,    ///< the output's folder takes none
        ProgramEnds
    };
    struct Taken;

    OutputLease() = default;
    OutputLease(OutputLease&& other) noexcept = default;
    OutputLease& operator=(OutputLease&& other) noexcept;
    OutputLease(const OutputLease&) = delete;
    OutputLease& operator=(const OutputLease&) = delete;
    ~OutputLease() { end(); }

    /// Makes the files of a record with a destination. An automatic destination that somebody else
    /// has taken meanwhile is exchanged for another one. The progress file lies in the first of the
    /// folders that takes it. Asks the disks: in the background.
    [[nodiscard]] static Taken take(std::shared_ptr<Keeper> keeper, const MKVFileInfo& record,
                                    const std::vector<std::filesystem::path>& progressFolders);

    /// Null: there are none, or the lease is over.
    [[nodiscard]] const std::shared_ptr<RunFiles>& files() const { return files_; }
    /// The lease is over. In the background what was not kept is gone when this returns.
    void end();

private:
    OutputLease(std::shared_ptr<Keeper> keeper, std::shared_ptr<RunFiles> files);
    [[nodiscard]] bool makeProgressFile(const std::vector<std::filesystem::path>& folders,
                                        std::string_view movieName);
    [[nodiscard]] bool makeOutput(const MKVFileInfo& record);
    void note();

    // Shared with what reads them back and with what deletes them, which may go on for longer.
    std::shared_ptr<RunFiles> files_;
    // Shared by all leases, which may outlive the controller in the background.
    std::shared_ptr<Keeper> keeper_;
};

struct OutputLease::Taken {
    OutputLease lease{};
    Refusal refusal = Refusal::None;
    int error = 0;  ///< an errno
};

/// What a lease asks of the one who gives leases out. Any thread.
class OutputLease::Keeper {
public:
    virtual ~Keeper() = default;

    /// Files are about to be made. False: the program ends, and none may be.
    [[nodiscard]] virtual bool begin(const std::shared_ptr<RunFiles>& files) = 0;
    /// Puts a note on disk that lets the next start of the program clear up after a crash: before
    /// the files have their names, and in the place of an earlier note on them.
    virtual void note(const RunFiles& files, const OwnFile& output,
                      const OwnFile& progressFile) = 0;
    /// No more files are made for these.
    virtual void made(const std::shared_ptr<RunFiles>& files) = 0;
    /// The lease is over: what was not kept is to be deleted, and then the note to be forgotten. On
    /// the main thread this returns before it is done.
    virtual void giveBack(const std::shared_ptr<RunFiles>& files) = 0;

    /// Nobody else gets a path until it is released as often as it was held.
    virtual void hold(const std::filesystem::path& path) = 0;
    virtual void release(const std::filesystem::path& path) = 0;
    /// Another free path for the record beside one that was taken; held.
    [[nodiscard]] virtual std::filesystem::path otherPath(const MKVFileInfo& record,
                                                          const std::filesystem::path& taken) = 0;
};

}  // namespace reelvane
