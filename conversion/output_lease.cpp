#include "conversion/output_lease.h"

#include <cerrno>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

#include "conversion/progress_file.h"
#include "support/paths.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;

constexpr int kMostRaces = 100;  // lost to other programs, before no name is to be had
constexpr mode_t kAsUsual = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;

/// Beside a file that is to be replaced. It has the same extension, which tells the converter what
/// to write, and says what it is to whoever finds it.
fs::path unfinishedPathBeside(const fs::path& destination) {
    auto name = destination.stem();
    name += ".unfinished";
    name += destination.extension();
    return Fennimar::uniqueFile(destination.parent_path() / name);
}

}  // namespace

RunFiles::Keeping RunFiles::keep() {
    auto state = State::Unfinished;
    if (!state_.compare_exchange_strong(state, State::Keeping)) return Keeping::Unwanted;
    auto result = output_.whereabouts() ? Keeping::Kept : Keeping::Gone;
    if (result == Keeping::Kept && work_ != destination_ && !output_.replace(destination_)) {
        result = Keeping::Unreplaced;
    } else if (result == Keeping::Kept) {
        output_.followMove();
    }
    state_ = result == Keeping::Kept ? State::Kept : State::Unfinished;
    return result;
}

bool RunFiles::discard() {
    auto state = State::Unfinished;
    state_.compare_exchange_strong(state, State::Discarded);
    const bool progressGone = progress_.remove();
    if (state == State::Kept) return progressGone;
    // Just being kept, it is not ours to judge; the note on it stays.
    return state != State::Keeping && output_.remove() && progressGone;
}

std::vector<fs::path> RunFiles::leftovers() const {
    std::vector<fs::path> found;
    if (state_ != State::Kept && output_.isNamed()) {
        found.push_back(output_.whereabouts().value_or(output_.path()));
    }
    if (progress_.whereabouts()) found.push_back(*progress_.whereabouts());
    return found;
}

OutputLease::OutputLease(std::shared_ptr<Keeper> keeper, std::shared_ptr<RunFiles> files)
    : files_(std::move(files)),
      keeper_(std::move(keeper)) {}

OutputLease& OutputLease::operator=(OutputLease&& other) noexcept {
    if (this == &other) return *this;
    end();
    files_ = std::move(other.files_);
    keeper_ = std::move(other.keeper_);
    return *this;
}

void OutputLease::end() {
    if (const auto files = std::exchange(files_, {})) keeper_->giveBack(files);
}

OutputLease::Taken OutputLease::take(std::shared_ptr<Keeper> keeper, const MKVFileInfo& record,
                                     const std::vector<fs::path>& progressFolders) {
    auto files = std::make_shared<RunFiles>();
    files->destination_ = files->work_ = *record.destinationURL;
    if (record.outputClaim == OutputClaim::Chosen && Fennimar::isOccupied(files->destination_)) {
        files->work_ = unfinishedPathBeside(files->destination_);
    }
    files->output_ = HeldFile::unnamed(files->work_.parent_path(), kAsUsual);
    keeper->hold(files->destination_);
    if (!keeper->begin(files)) {
        keeper->release(files->destination_);
        return {.refusal = Refusal::ProgramEnds};
    }
    OutputLease lease(std::move(keeper), files);
    Taken taken;
    if (!lease.makeProgressFile(progressFolders, record.fileName)) {
        taken.refusal = Refusal::NoProgressFile;
    } else if (!lease.makeOutput(record)) {
        taken.error = errno;
        taken.refusal = Refusal::NoOutputFile;
    }
    lease.keeper_->made(files);
    if (taken.refusal == Refusal::None) taken.lease = std::move(lease);
    return taken;
}

void OutputLease::note() {
    keeper_->note(*files_, {files_->work_, files_->output_.birthMark()},
                  {files_->progressPath_, files_->progress_.birthMark()});
}

bool OutputLease::makeProgressFile(const std::vector<fs::path>& folders,
                                   std::string_view movieName) {
    auto& file = files_->progress_;
    for (const auto& folder : folders) {
        if (!folder.is_absolute()) continue;
        file = HeldFile::unnamed(folder, kPrivate);
        auto naming = Naming::Taken;
        for (int race = 0; naming == Naming::Taken && race < kMostRaces; ++race) {
            files_->progressPath_ = freeProgressPath(folder, movieName);
            note();
            lockProgress(file.descriptor());
            naming = file.nameAs(files_->progressPath_);
        }
        if (naming != Naming::Made) continue;
        lockProgress(file.descriptor());  // where it could not be made without a name
        return true;
    }
    return false;
}

bool OutputLease::makeOutput(const MKVFileInfo& record) {
    auto& file = files_->output_;
    for (int race = 0; race < kMostRaces; ++race) {
        note();
        const auto naming = file.nameAs(files_->work_);
        if (naming == Naming::Impossible) return false;
        if (naming == Naming::Made) {
            note();  // with the marks of files that could not be made without a name
            return true;
        }
        if (record.outputClaim == OutputClaim::Chosen) {
            files_->work_ = unfinishedPathBeside(files_->destination_);
            continue;
        }
        const auto taken =
            std::exchange(files_->destination_, keeper_->otherPath(record, files_->destination_));
        keeper_->release(taken);
        files_->work_ = files_->destination_;
    }
    errno = EEXIST;
    return false;
}

}  // namespace reelvane
