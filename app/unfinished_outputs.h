#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/progress_file.h"
#include "support/errands.h"
#include "support/held_file.h"
#include "support/ports/host.h"
#include "support/vantor.h"

namespace reelvane {

class Translations;

/// A conversion that was at work: what it writes, and the process that follows it.
struct UnfinishedOutput {
    int processID = 0;
    std::string startTime{};  ///< of that process, as Host::processStartTime says it
    ProcessScope scope{};     ///< where that process runs
    OwnFile output{};
    OwnFile progressFile{};
    bool unwanted = false;  ///< its conversion was ended on purpose, however whole it may read

    [[nodiscard]] bool operator==(const UnfinishedOutput&) const = default;
};

/// How one of them stands in the stored list. Any bytes in the paths come back as they were.
[[nodiscard]] std::string unfinishedOutputText(const UnfinishedOutput& unfinished);
/// Absent for what this program never wrote.
[[nodiscard]] std::optional<UnfinishedOutput> unfinishedOutputFromText(std::string_view text);

/// The stored list of these texts; absent: it is empty. What is longer than this program ever
/// writes, or is no list, counts as empty.
using UnfinishedList = std::optional<std::string>;
[[nodiscard]] std::vector<std::string> entriesOf(const UnfinishedList& list);
/// The list with one entry more, in the place of `before` if that is in it.
[[nodiscard]] UnfinishedList withEntry(const UnfinishedList& list, const std::string& before,
                                       const std::string& entry);
/// The list without these entries, and without what this program never wrote.
[[nodiscard]] UnfinishedList withoutEntries(const UnfinishedList& list,
                                            const std::set<std::string>& entries);

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

/// Deletes, as the program starts, what crashed ones have left behind: the partial outputs and the
/// progress files of processes that are gone for sure (see isGone), as far as they are the very
/// files that those made. An output that reads as a whole movie stays: its program may have ended
/// between finishing it and saying so. Main thread only; the disks are asked in the background, one
/// folder beside the other, and a note is forgotten only when its file is gone. What lies on a disk
/// that is away, or does not answer, is left for a later start, and
/// what cannot be deleted is told.
class UnfinishedOutputs {
public:
    explicit UnfinishedOutputs(Vantor& vantor)
        : vantor_(vantor),
          errands_(vantor.ports().dispatcher) {}

    void cleanUp();

private:
    enum class Outcome { Deleted, Whole, Unknown, Absent, Away, Stuck, AtWork };
    struct Cleaned {
        std::string entry{};
        UnfinishedOutput unfinished{};
        Outcome outcome = Outcome::AtWork;
    };
    [[nodiscard]] static Outcome cleanUpAfter(const UnfinishedOutput& unfinished);
    static void log(const Cleaned& cleaned);
    void tellOfStuck(const UnfinishedOutput& unfinished);
    void forget(const std::vector<Cleaned>& cleaned);

    Vantor& vantor_;
    Errands errands_;
};

/// What a user is told of an unfinished file that could not be deleted.
[[nodiscard]] std::string leftBehindText(const Translations& translations,
                                         const std::filesystem::path& file);

}  // namespace reelvane
