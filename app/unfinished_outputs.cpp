#include "app/unfinished_outputs.h"

#include <algorithm>
#include <functional>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "app/preference_keys.h"
#include "conversion/mp4_movie.h"
#include "support/logging.h"
#include "support/paths.h"
#include "support/ports/host.h"
#include "support/preference_text.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;

enum class Outcome { Deleted, Whole, Absent };

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

/// Neither a link nor a folder is ever what a conversion left behind.
bool isPlainFile(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(fs::symlink_status(path, ignored));
}

Outcome cleanUpAfter(const UnfinishedOutput& unfinished) {
    if (isPlainFile(unfinished.progressFile)) Fennimar::removeFile(unfinished.progressFile);
    if (!isPlainFile(unfinished.output)) return Outcome::Absent;
    if (readMp4(unfinished.output).movie) return Outcome::Whole;
    Fennimar::removeFile(unfinished.output);
    return Outcome::Deleted;
}

void logOutcome(const CleanedOutput& cleaned) {
    if (cleaned.outcome == Outcome::Deleted) {
        vn_log_level(kLogError, "Info: deleted %@, which an interrupted conversion left unfinished",
                     cleaned.output);
    } else if (cleaned.outcome == Outcome::Whole) {
        vn_log_level(kLogError, "Info: kept %@: its conversion was interrupted, but it is whole",
                     cleaned.output);
    }
}

}  // namespace

std::string unfinishedOutputText(const UnfinishedOutput& unfinished) {
    return preferenceText(std::vector{std::to_string(unfinished.processID), unfinished.startTime,
                                      unfinished.output.native(),
                                      unfinished.progressFile.native()});
}

std::optional<UnfinishedOutput> unfinishedOutputFromText(std::string_view text) {
    const auto fields = listFromPreferenceText(text);
    if (!fields || fields->size() != 4) return std::nullopt;
    UnfinishedOutput unfinished{.processID = Fennimar::leadingInteger(fields->at(0)),
                                .startTime = fields->at(1),
                                .output = fields->at(2),
                                .progressFile = fields->at(3)};
    const bool complete = unfinished.processID > 0 && !unfinished.startTime.empty() &&
                          unfinished.output.is_absolute() && unfinished.progressFile.is_absolute();
    return complete ? std::optional(std::move(unfinished)) : std::nullopt;
}

void UnfinishedOutputs::cleanUp() {
    auto& preferences = vantor_.preferences();
    const auto& host = vantor_.ports().host;
    // Where even this process cannot be seen, every other one would seem to be gone.
    if (!preferences.defaultObject(kUnfinishedOutputKey) || !host.processStartTime(::getpid())) {
        return;
    }
    std::vector<CleanedOutput> cleaned;
    const auto clean = [&](const std::optional<UnfinishedOutput>& unfinished) {
        if (!unfinished) return true;
        if (host.processStartTime(unfinished->processID) == unfinished->startTime) return false;
        cleaned.push_back({.output = unfinished->output, .outcome = cleanUpAfter(*unfinished)});
        return true;
    };
    // All within the one edit: of two programs that start at once, one cleans up and the other
    // waits, and cannot have begun to write to a path that the first is about to clear.
    preferences.changeLater(kUnfinishedOutputKey, [&clean](std::optional<std::string> list) {
        return withoutEntries(list, clean);
    });
    preferences.writeChanges();
    std::ranges::for_each(cleaned, logOutcome);
}

void UnfinishedOutputs::begin(const fs::path& output, const fs::path& progressFile) {
    const auto startTime = vantor_.ports().host.processStartTime(::getpid());
    if (!startTime || !begun_.insert(output).second) return;
    vantor_.preferences().changeLater(
        kUnfinishedOutputKey,
        [entry = UnfinishedOutput{.processID = ::getpid(),
                                  .startTime = *startTime,
                                  .output = output,
                                  .progressFile = progressFile}](std::optional<std::string> list) {
            return withEntry(list, entry);
        });
}

void UnfinishedOutputs::settle(const fs::path& output) {
    if (begun_.erase(output) == 0) return;
    vantor_.preferences().changeLater(
        kUnfinishedOutputKey, [output, processID = ::getpid()](std::optional<std::string> list) {
            return withoutEntries(list, [&](const std::optional<UnfinishedOutput>& entry) {
                return entry && entry->processID == processID && entry->output == output;
            });
        });
}

}  // namespace reelvane
