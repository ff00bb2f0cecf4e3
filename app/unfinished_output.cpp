#include "app/unfinished_output.h"

#include <utility>
#include <vector>

#include "support/birth_mark.h"
#include "support/preference_text.h"
#include "support/strings.h"

namespace reelvane {
namespace {

/// An unknown one agrees with nothing.
bool agree(const std::string& one, const std::string& other) {
    return !one.empty() && one == other;
}

}  // namespace

OwnFile ownFileAt(const std::filesystem::path& path) {
    return {.path = path, .birthMark = birthMarkOf(path).value_or("")};
}

bool isStillThere(const OwnFile& file) {
    return !file.birthMark.empty() && birthMarkOf(file.path) == file.birthMark;
}

std::string unfinishedOutputText(const UnfinishedOutput& unfinished) {
    return preferenceText(
        std::vector{std::to_string(unfinished.processID), unfinished.startTime,
                    unfinished.scope.machine, unfinished.scope.boot, unfinished.scope.pidNamespace,
                    unfinished.output.path.native(), unfinished.output.birthMark,
                    unfinished.progressFile.path.native(), unfinished.progressFile.birthMark});
}

std::optional<UnfinishedOutput> unfinishedOutputFromText(std::string_view text) {
    constexpr std::size_t kFields = 9;
    const auto fields = listFromPreferenceText(text);
    if (!fields || fields->size() != kFields) return std::nullopt;
    UnfinishedOutput unfinished{
        .processID = Fennimar::leadingInteger(fields->at(0)),
        .startTime = fields->at(1),
        .scope = {.machine = fields->at(2), .boot = fields->at(3), .pidNamespace = fields->at(4)},
        .output = {.path = fields->at(5), .birthMark = fields->at(6)},
        .progressFile = {.path = fields->at(7), .birthMark = fields->at(8)}};
    const bool complete = unfinished.processID > 0 && !unfinished.startTime.empty() &&
                          unfinished.output.path.is_absolute() &&
                          unfinished.progressFile.path.is_absolute();
    return complete ? std::optional(std::move(unfinished)) : std::nullopt;
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
