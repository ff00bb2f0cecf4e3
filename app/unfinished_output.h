#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "conversion/progress_file.h"
#include "support/ports/host.h"

namespace reelvane {

/// A file that a conversion has made.
struct OwnFile {
    std::filesystem::path path{};
    std::string birthMark{};  ///< see birthMarkOf; empty: none could be had

    [[nodiscard]] bool operator==(const OwnFile&) const = default;
};
/// What lies at the path now, as a conversion's own file.
[[nodiscard]] OwnFile ownFileAt(const std::filesystem::path& path);
/// True when the very file that was made still lies there.
[[nodiscard]] bool isStillThere(const OwnFile& file);

/// A conversion that was at work: what it writes, and the process that follows it.
struct UnfinishedOutput {
    int processID = 0;
    std::string startTime{};  ///< of that process, as Host::processStartTime says it
    ProcessScope scope{};     ///< where that process runs
    OwnFile output{};
    OwnFile progressFile{};

    [[nodiscard]] bool operator==(const UnfinishedOutput&) const = default;
};

/// How one of them stands in the stored list. Any bytes in the paths come back as they were.
[[nodiscard]] std::string unfinishedOutputText(const UnfinishedOutput& unfinished);
/// Absent for what this program never wrote.
[[nodiscard]] std::optional<UnfinishedOutput> unfinishedOutputFromText(std::string_view text);

/// Whether the process that follows the conversion is gone for sure.
///
/// Programs that share a home folder need not see each other's processes: they may run in
/// containers, or on several machines with the home on a server. So a process counts as gone only
/// - where it ran in this very process namespace, and its number and start time are no longer
/// there;
/// - where it ran in an earlier boot of this machine;
/// - where it ran in another namespace of this boot, and its progress file's lock can be taken: the
///   kernel that both share keeps that lock for it as long as it lives.
/// A lock that is held keeps an entry alive in every case: that also covers machines whose ids were
/// copied along with their disk. On any other machine nothing can be known, and that one clears up
/// by itself.
/// `startTimeNow`: what this process is told of `unfinished.processID`.
[[nodiscard]] bool isGone(const UnfinishedOutput& unfinished, const ProcessScope& here,
                          const std::optional<std::string>& startTimeNow, ProgressLock lock);

}  // namespace reelvane
