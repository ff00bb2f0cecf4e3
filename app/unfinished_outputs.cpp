#include "app/unfinished_outputs.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

#include "app/preference_keys.h"
#include "conversion/mp4_movie.h"
#include "support/dispatch.h"
#include "support/logging.h"
#include "support/paths.h"
#include "support/ports/host.h"
#include "support/preference_text.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;

enum class Outcome { Deleted, Whole, Unknown, Absent };

struct CleanedOutput {
    fs::path output{};
    Outcome outcome = Outcome::Absent;
};

/// The stored list without the entries that `leaves` picks; absent when none is left.
std::optional<std::string> withoutEntries(
    const std::optional<std::string>& list,
    const std::function<bool(const std::optional<UnfinishedOutput>&)>& leaves) {
    auto entries = listFromPreferenceText(list.value_or("")).value_or(std::vector<std::string>{});
    std::erase_if(entries, [&leaves](const std::string& entry) {
        return leaves(unfinishedOutputFromText(entry));
    });
    return entries.empty() ? std::nullopt : std::optional(preferenceText(entries));
}

std::string withEntry(const std::optional<std::string>& list, const UnfinishedOutput& entry) {
    auto entries = listFromPreferenceText(list.value_or("")).value_or(std::vector<std::string>{});
    entries.push_back(unfinishedOutputText(entry));
    return preferenceText(entries);
}

Outcome cleanUpAfter(const UnfinishedOutput& unfinished) {
    if (isStillThere(unfinished.progressFile)) {
        Fennimar::removeFile(unfinished.progressFile.path);
    }
    const auto& output = unfinished.output;
    if (!Fennimar::fileExists(output.path)) return Outcome::Absent;
    if (!isStillThere(output)) return Outcome::Unknown;
    if (readMp4(output.path).movie) return Outcome::Whole;
    Fennimar::removeFile(output.path);
    return Outcome::Deleted;
}

void logOutcome(const CleanedOutput& cleaned) {
    if (cleaned.outcome == Outcome::Deleted) {
        vn_log_level(LogError, "Info: deleted %@, which an interrupted conversion left unfinished",
                     cleaned.output);
    } else if (cleaned.outcome == Outcome::Whole) {
        vn_log_level(LogError, "Info: kept %@: its conversion was interrupted, but it is whole",
                     cleaned.output);
    } else if (cleaned.outcome == Outcome::Unknown) {
        vn_log_level(LogError,
                     "Info: left %@ alone: it can't be told whether an interrupted conversion or "
                     "another program made it",
                     cleaned.output);
    }
}

/// Asks for what no cache of the system answers, so that a folder whose server is gone holds this
/// up and not the clearing up, which keeps other programs waiting.
void askDisk(const fs::path& output) {
    std::error_code ignored;
    static_cast<void>(fs::space(output.parent_path(), ignored));
    static_cast<void>(fs::symlink_status(output, ignored));
}

/// Told only of the process's own file: the lock of another says nothing about the process.
ProgressLock lockOf(const OwnFile& progressFile) {
    return isStillThere(progressFile) ? progressLockOf(progressFile.path) : ProgressLock::Unknown;
}

}  // namespace

void UnfinishedOutputs::cleanUp() {
    auto& preferences = vantor_.preferences();
    const auto& host = vantor_.ports().host;
    // Where even this process cannot be seen, every other one would seem to be gone.
    if (!preferences.defaultObject(kUnfinishedOutputKey) || !host.processStartTime(::getpid())) {
        return;
    }
    for (const auto& text :
         preferences.defaultArray(kUnfinishedOutputKey).value_or(std::vector<std::string>{})) {
        const auto entry = unfinishedOutputFromText(text);
        const auto output = entry ? entry->output.path : fs::path();
        dispatch_async_back(vantor_,
                            [this, &vantor = vantor_, alive = std::weak_ptr(alive_), output] {
                                askDisk(output);
                                dispatch_async_main(vantor, [this, alive, output] {
                                    if (alive.lock()) cleanUpOf(output);
                                });
                            });
    }
}

void UnfinishedOutputs::cleanUpOf(const fs::path& output) {
    auto& preferences = vantor_.preferences();
    const auto& host = vantor_.ports().host;
    const auto here = host.processScope();
    std::vector<CleanedOutput> cleaned;
    const auto clean = [&](const std::optional<UnfinishedOutput>& unfinished) {
        if (!unfinished) return true;
        if (unfinished->output.path != output) return false;
        if (!isGone(*unfinished, here, host.processStartTime(unfinished->processID),
                    lockOf(unfinished->progressFile))) {
            return false;
        }
        cleaned.push_back(
            {.output = unfinished->output.path, .outcome = cleanUpAfter(*unfinished)});
        return true;
    };
    // All within the one edit: of two programs that start at once, one cleans up and the other
    // waits, and cannot have begun to write to a path that the first is about to clear.
    preferences.changeLater(kUnfinishedOutputKey, [&clean](const std::optional<std::string>& list) {
        return withoutEntries(list, clean);
    });
    preferences.writeChanges();
    std::ranges::for_each(cleaned, logOutcome);
}

void UnfinishedOutputs::begin(const fs::path& output, const std::string& outputMark,
                              const fs::path& progressFile) {
    const auto& host = vantor_.ports().host;
    const auto startTime = host.processStartTime(::getpid());
    if (!startTime || begun_.contains(output)) return;
    const UnfinishedOutput entry{.processID = ::getpid(),
                                 .startTime = *startTime,
                                 .scope = host.processScope(),
                                 .output = {.path = output, .birthMark = outputMark},
                                 .progressFile = ownFileAt(progressFile)};
    begun_.emplace(output, entry);
    vantor_.preferences().changeLater(
        kUnfinishedOutputKey,
        [entry](const std::optional<std::string>& list) { return withEntry(list, entry); });
}

void UnfinishedOutputs::settle(const fs::path& output) {
    if (begun_.erase(output) == 0) return;
    vantor_.preferences().changeLater(
        kUnfinishedOutputKey,
        [output, processID = ::getpid(),
         scope = vantor_.ports().host.processScope()](const std::optional<std::string>& list) {
            return withoutEntries(list, [&](const std::optional<UnfinishedOutput>& entry) {
                return entry && entry->processID == processID && entry->scope == scope &&
                       entry->output.path == output;
            });
        });
}

void UnfinishedOutputs::abandon() {
    while (!begun_.empty()) {
        const auto [output, entry] = *begun_.begin();
        logOutcome({.output = output, .outcome = cleanUpAfter(entry)});
        settle(output);
    }
    vantor_.preferences().writeChanges();
}

}  // namespace reelvane
