#include "app/unfinished_output.h"

#include <utility>

#include "support/preference_text.h"
#include "support/strings.h"

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

}  // namespace reelvane
