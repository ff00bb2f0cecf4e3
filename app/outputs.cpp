#include "app/outputs.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <unistd.h>
#include <utility>

#include "app/preference_table.h"
#include "app/unfinished_outputs.h"
#include "support/logging.h"
#include "support/paths.h"
#include "support/ports/host.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

// At the program's end, for files that are just being made.
constexpr std::chrono::seconds kPatience(3);

std::string_view withoutDot(std::string_view extension) {
    return extension.substr(extension.starts_with('.') ? 1 : 0);
}

}  // namespace

std::string OutputNames::keyOf(const std::filesystem::path& path) {
    return path.lexically_normal().native();
}

std::uint64_t OutputNames::firstNumberFor(const std::string& key) const {
    const std::lock_guard lock(mutex_);
    const auto known = numbers_.find(key);
    return known == numbers_.end() ? 0 : known->second;
}

std::filesystem::path OutputNames::takeFreePath(const std::filesystem::path& folder,
                                                std::string_view inputName,
                                                std::string_view extension) {
    auto name = std::filesystem::path(inputName).stem();
    name += ".";
    name += extension;
    const auto wished = folder / name;
    const auto key = keyOf(wished);
    auto number = firstNumberFor(key);
    // Asked only of a place where nothing lies, and promised with the asking.
    auto path = Fennimar::uniqueFile(
        wished,
        [this](const std::filesystem::path& candidate) { return !promiseIfFree(candidate); },
        &number);
    const std::lock_guard lock(mutex_);
    if (number > 0) numbers_[key] = number;
    return path;
}

void OutputNames::promise(const std::filesystem::path& path) {
    const std::lock_guard lock(mutex_);
    ++promises_[keyOf(path)];
}

bool OutputNames::promiseIfFree(const std::filesystem::path& path) {
    const std::lock_guard lock(mutex_);
    return promises_.emplace(keyOf(path), 1).second;
}

void OutputNames::release(const std::filesystem::path& path) {
    const std::lock_guard lock(mutex_);
    const auto found = promises_.find(keyOf(path));
    if (found != promises_.end() && --found->second <= 0) promises_.erase(found);
    numbers_.clear();
}

FileRemovals::FileRemovals(Vantor& vantor) : errands_(vantor.ports().dispatcher) {}

void FileRemovals::remove(Work deletion, Work then) {
    if (finishing_) {
        deletion();
        then();
        return;
    }
    const auto number = ++last_;
    underWay_.emplace(number, Removal{.deletion = deletion, .then = std::move(then)});
    errands_.run(std::move(deletion), [this, number] { deleted(number); });
}

void FileRemovals::deleted(std::uint64_t number) {
    const auto removal = underWay_.extract(number);
    if (!removal.empty()) removal.mapped().then();
}

void FileRemovals::finish() {
    finishing_ = true;
    for (const auto& [number, removal] : std::exchange(underWay_, {})) {
        removal.deletion();
        removal.then();
    }
}

Outputs::Outputs(Vantor& vantor, std::shared_ptr<OutputNames> names)
    : vantor_(vantor),
      names_(std::move(names)),
      removals_(vantor) {}

bool Outputs::begin(const std::shared_ptr<RunFiles>& files) {
    const std::lock_guard lock(mutex_);
    if (finishing_) return false;
    begun_.emplace(files.get(), Begun{.files = files});
    return true;
}

void Outputs::note(const RunFiles& files, const OwnFile& output, const OwnFile& progressFile) {
    const auto& host = vantor_.ports().host;
    const auto startTime = host.processStartTime(::getpid());
    if (!startTime) return;
    const auto entry = unfinishedOutputText({.processID = ::getpid(),
                                             .startTime = *startTime,
                                             .scope = host.processScope(),
                                             .output = output,
                                             .progressFile = progressFile});
    std::string before;
    {
        const std::lock_guard lock(mutex_);
        auto& begun = begun_.at(&files);
        begun.output = output.path;
        before = std::exchange(begun.note, entry);
    }
    if (before == entry) return;
    const bool written = vantor_.preferences().edit([&](PreferenceValues& values) {
        const auto found = values.find(kUnfinishedOutput.key);
        const auto list = found == values.end() ? UnfinishedList() : UnfinishedList(found->second);
        values.insert_or_assign(std::string(kUnfinishedOutput.key),
                                withEntry(list, before, entry).value_or(""));
    });
    if (!written) {
        vn_log_level(LogError,
                     "Error: the preferences can't be written: %@ will stay should this program "
                     "be killed now",
                     output.path);
    }
}

void Outputs::made(const std::shared_ptr<RunFiles>& files) {
    {
        const std::lock_guard lock(mutex_);
        if (const auto found = begun_.find(files.get()); found != begun_.end()) {
            found->second.making = false;
        }
    }
    made_.notify_all();
}

void Outputs::giveBack(const std::shared_ptr<RunFiles>& files) {
    {
        const std::lock_guard lock(mutex_);
        if (!begun_.contains(files.get())) return;  // the program ends, and has seen to it
    }
    if (!vantor_.ports().dispatcher.isMainThread()) {
        settle(files, files->discard());
        return;
    }
    const auto gone = std::make_shared<std::atomic<bool>>();
    removals_.remove([files, gone] { *gone = files->discard(); },
                     [this, files, gone] { settle(files, *gone); });
}

void Outputs::settle(const std::shared_ptr<RunFiles>& files, bool gone) {
    std::string note;
    {
        const std::lock_guard lock(mutex_);
        const auto found = begun_.find(files.get());
        if (found == begun_.end()) return;
        if (gone) note = std::move(begun_.extract(found).mapped().note);
    }
    if (!gone) {
        noteUnwanted(files);
        for (const auto& left : files->leftovers()) {
            vn_log_level(LogError, "Error: %@ is unfinished and can't be deleted", left);
        }
        return;
    }
    names_->release(files->destination());
    if (note.empty()) return;
    vantor_.preferences().changeLater(kUnfinishedOutput.key, [note](const UnfinishedList& list) {
        return withoutEntries(list, {note});
    });
}

void Outputs::noteUnwanted(const std::shared_ptr<RunFiles>& files) {
    std::string before;
    std::string entry;
    {
        const std::lock_guard lock(mutex_);
        const auto found = begun_.find(files.get());
        if (found == begun_.end()) return;
        auto unfinished = unfinishedOutputFromText(found->second.note);
        if (!unfinished || std::exchange(unfinished->unwanted, true)) return;
        entry = unfinishedOutputText(*unfinished);
        before = std::exchange(found->second.note, entry);
    }
    vantor_.preferences().changeLater(
        kUnfinishedOutput.key,
        [before, entry](const UnfinishedList& list) { return withEntry(list, before, entry); });
}

std::filesystem::path Outputs::otherPath(const MKVFileInfo& record,
                                         const std::filesystem::path& taken) {
    return names_->takeFreePath(taken.parent_path(), record.fileName,
                                withoutDot(taken.extension().native()));
}

void Outputs::finish() {
    {
        std::unique_lock lock(mutex_);
        finishing_ = true;
        made_.wait_for(lock, kPatience, [this] {
            return std::ranges::none_of(begun_,
                                        [](const auto& entry) { return entry.second.making; });
        });
    }
    removals_.finish();
    discardAll();
}

void Outputs::discardAll() {
    std::vector<std::shared_ptr<RunFiles>> left;
    {
        const std::lock_guard lock(mutex_);
        leftBehind_.clear();
        for (const auto& [key, begun] : begun_) {
            // One that a disk keeps from being made is given back by who makes it.
            if (begun.making) leftBehind_.push_back(begun.output);
            if (!begun.making) left.push_back(begun.files);
        }
    }
    for (const auto& files : left) {
        const bool gone = files->discard();
        settle(files, gone);
        if (gone) continue;
        const std::lock_guard lock(mutex_);
        for (auto& path : files->leftovers()) leftBehind_.push_back(std::move(path));
    }
}

std::vector<std::filesystem::path> Outputs::leftBehind() const {
    const std::lock_guard lock(mutex_);
    return leftBehind_;
}

}  // namespace reelvane
