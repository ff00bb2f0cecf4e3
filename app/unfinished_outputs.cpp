#include "app/unfinished_outputs.h"

#include <algorithm>
#include <map>
#include <set>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "app/preference_table.h"
#include "mp4/mp4_reader.h"
#include "support/alerts.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/host.h"
#include "support/ports/translations.h"
#include "support/preference_text.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

/// An unknown one agrees with nothing.
bool agree(const std::string& one, const std::string& other) {
    return !one.empty() && one == other;
}

constexpr std::string_view kUnwanted = "unwanted";

// A hundred programs at work with the longest of paths stay below both.
constexpr std::size_t kLongestList = 2'000'000;  // bytes
constexpr std::size_t kMostEntries = 1000;

UnfinishedList listOf(const std::vector<std::string>& entries) {
    return entries.empty() ? std::nullopt : std::optional(preferenceText(entries));
}

namespace fs = std::filesystem;

constexpr std::size_t kMostFolders = 32;  // that are asked at once; the others wait for a new start

/// Told only of the process's own file: the lock of another says nothing about the process.
ProgressLock lockOf(const OwnFile& progressFile) {
    return isStillThere(progressFile) ? progressLockOf(progressFile.path) : ProgressLock::Unknown;
}

/// True when it is gone, or was not there. What lies there and is another's counts as that.
bool removeOwn(const OwnFile& file) {
    return !isStillThere(file) || ::unlink(file.path.c_str()) == 0;
}

bool folderIsThere(const fs::path& file) {
    std::error_code ignored;
    return fs::is_directory(file.parent_path(), ignored);
}

}  // namespace

std::string unfinishedOutputText(const UnfinishedOutput& unfinished) {
    std::vector fields{std::to_string(unfinished.processID),
                       unfinished.startTime,
                       unfinished.scope.machine,
                       unfinished.scope.boot,
                       unfinished.scope.pidNamespace,
                       unfinished.output.path.native(),
                       unfinished.output.birthMark,
                       unfinished.progressFile.path.native(),
                       unfinished.progressFile.birthMark};
    if (unfinished.unwanted) fields.emplace_back(kUnwanted);
    return preferenceText(fields);
}

std::optional<UnfinishedOutput> unfinishedOutputFromText(std::string_view text) {
    constexpr std::size_t kFields = 9;
    const auto fields = listFromPreferenceText(text);
    if (!fields || fields->size() < kFields || fields->size() > kFields + 1) return std::nullopt;
    UnfinishedOutput unfinished{
        .processID = Fennimar::leadingInteger(fields->at(0)),
        .startTime = fields->at(1),
        .scope = {.machine = fields->at(2), .boot = fields->at(3), .pidNamespace = fields->at(4)},
        .output = {.path = fields->at(5), .birthMark = fields->at(6)},
        .progressFile = {.path = fields->at(7), .birthMark = fields->at(8)},
        .unwanted = fields->back() == kUnwanted};
    const bool complete = unfinished.processID > 0 && !unfinished.startTime.empty() &&
                          unfinished.output.path.is_absolute() &&
                          unfinished.progressFile.path.is_absolute();
    return complete ? std::optional(std::move(unfinished)) : std::nullopt;
}

std::vector<std::string> entriesOf(const UnfinishedList& list) {
    if (!list || list->size() > kLongestList) return {};
    auto entries = listFromPreferenceText(*list).value_or(std::vector<std::string>{});
    if (entries.size() > kMostEntries) entries.clear();
    return entries;
}

UnfinishedList withEntry(const UnfinishedList& list, const std::string& before,
                         const std::string& entry) {
    auto entries = entriesOf(list);
    std::erase(entries, before);
    entries.push_back(entry);
    return listOf(entries);
}

UnfinishedList withoutEntries(const UnfinishedList& list, const std::set<std::string>& entries) {
    auto left = entriesOf(list);
    std::erase_if(left, [&entries](const std::string& entry) {
        return entries.contains(entry) || !unfinishedOutputFromText(entry);
    });
    return listOf(left);
}

bool isGone(const UnfinishedOutput& unfinished, const ProcessScope& here,
            const std::optional<std::string>& startTimeNow, ProgressLock lock) {
    const auto& there = unfinished.scope;
    if (lock == ProgressLock::Held) return false;
    if (!agree(there.boot, here.boot)) {
        return !there.boot.empty() && !here.boot.empty() && agree(there.machine, here.machine);
    }
    if (agree(there.pidNamespace, here.pidNamespace)) return startTimeNow != unfinished.startTime;
    return lock == ProgressLock::Free;
}

UnfinishedOutputs::Outcome UnfinishedOutputs::cleanUpAfter(const UnfinishedOutput& unfinished) {
    const auto& output = unfinished.output;
    if (!removeOwn(unfinished.progressFile)) return Outcome::Stuck;
    if (!Fennimar::isOccupied(output.path)) {
        return folderIsThere(output.path) ? Outcome::Absent : Outcome::Away;
    }
    if (!isStillThere(output)) return Outcome::Unknown;
    if (!unfinished.unwanted && readMp4(output.path).movie) return Outcome::Whole;
    return removeOwn(output) ? Outcome::Deleted : Outcome::Stuck;
}

void UnfinishedOutputs::log(const Cleaned& cleaned) {
    const auto& output = cleaned.unfinished.output.path;
    switch (cleaned.outcome) {
        case Outcome::Deleted:
            vn_log_level(LogError,
                         "Info: deleted %@, which an interrupted conversion left unfinished",
                         output);
            break;
        case Outcome::Whole:
            vn_log_level(LogError, "Info: kept %@: its conversion was interrupted, but it is whole",
                         output);
            break;
        case Outcome::Unknown:
            vn_log_level(LogError,
                         "Info: left %@ alone: it can't be told whether an interrupted conversion "
                         "or another program made it",
                         output);
            break;
        case Outcome::Stuck:
            vn_log_level(LogError,
                         "Error: an interrupted conversion left %@ unfinished, and it or its "
                         "progress file %@ can't be deleted",
                         output, cleaned.unfinished.progressFile.path);
            break;
        case Outcome::Absent:
        case Outcome::Away:
        case Outcome::AtWork:
            break;
    }
}

void UnfinishedOutputs::tellOfStuck(const UnfinishedOutput& unfinished) {
    const auto& output = unfinished.output;
    const auto& path = isStillThere(output) ? output.path : unfinished.progressFile.path;
    alert_apptitled(vantor_, leftBehindText(vantor_.ports().translations, path), "OK");
}

std::string leftBehindText(const Translations& translations, const fs::path& file) {
    return makeString(
        translations.localized(
            "%@ is unfinished and could not be deleted. The next start tries again; otherwise "
            "please delete it yourself."),
        Fennimar::validUtf8(file.native()));
}

void UnfinishedOutputs::cleanUp() {
    auto& preferences = vantor_.preferences();
    const auto& host = vantor_.ports().host;
    const auto list = preferences.defaultObject(kUnfinishedOutput.key);
    // Where even this process cannot be seen, every other one would seem to be gone.
    if (!list || !host.processStartTime(::getpid())) return;
    const auto entries = entriesOf(list);
    std::map<fs::path, std::vector<Cleaned>> folders;
    for (const auto& entry : entries) {
        auto unfinished = unfinishedOutputFromText(entry);
        if (!unfinished) continue;
        const auto folder = unfinished->output.path.parent_path();
        if (folders.size() == kMostFolders && !folders.contains(folder)) continue;
        folders[folder].push_back({.entry = entry, .unfinished = *std::move(unfinished)});
    }
    const bool damaged = std::ranges::any_of(
        entries, [](const auto& entry) { return !unfinishedOutputFromText(entry); });
    if (damaged || entries.empty()) forget({});
    for (auto& [folder, found] : folders) {
        errands_.run(
            [&host, here = host.processScope(), asked = std::move(found)]() mutable {
                for (auto& each : asked) {
                    const auto& unfinished = each.unfinished;
                    if (isGone(unfinished, here, host.processStartTime(unfinished.processID),
                               lockOf(unfinished.progressFile))) {
                        each.outcome = cleanUpAfter(unfinished);
                    }
                }
                return asked;
            },
            [this](const std::vector<Cleaned>& cleaned) { forget(cleaned); });
    }
}

void UnfinishedOutputs::forget(const std::vector<Cleaned>& cleaned) {
    std::ranges::for_each(cleaned, log);
    std::set<std::string> settled;
    for (const auto& [entry, unfinished, outcome] : cleaned) {
        if (outcome == Outcome::Stuck) tellOfStuck(unfinished);
        const bool stays =
            outcome == Outcome::AtWork || outcome == Outcome::Stuck || outcome == Outcome::Away;
        if (!stays) settled.insert(entry);
    }
    if (settled.empty() && !cleaned.empty()) return;
    vantor_.preferences().changeLater(kUnfinishedOutput.key, [settled](const UnfinishedList& list) {
        return withoutEntries(list, settled);
    });
}

}  // namespace reelvane
