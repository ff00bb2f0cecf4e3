#pragma once

#include <string>
#include <vector>

#include "app/unfinished_output.h"
#include "support/errands.h"
#include "support/vantor.h"

namespace reelvane {

class Translations;

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
