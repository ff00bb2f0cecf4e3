#include "app/unfinished_outputs.h"

#include <algorithm>
#include <map>
#include <set>
#include <system_error>
#include <unistd.h>

#include "app/preference_keys.h"
#include "mp4/mp4_reader.h"
#include "support/alerts.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/host.h"
#include "support/ports/translations.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

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
    const auto list = preferences.defaultObject(kUnfinishedOutputKey);
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
    vantor_.preferences().changeLater(kUnfinishedOutputKey, [settled](const UnfinishedList& list) {
        return withoutEntries(list, settled);
    });
}

}  // namespace reelvane
