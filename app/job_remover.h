#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/job_queue.h"
#include "support/errands.h"
#include "support/observable.h"
#include "support/ports/dispatcher.h"

namespace reelvane {

class Vantor;

/// How long a removal can be undone.
inline constexpr std::chrono::seconds kUndoTime(10);

/// What the user has taken off the list and can have back.
struct Removal {
    std::size_t jobs = 0;
    std::string fileName{};    ///< of one of them
    bool losesWork = false;    ///< one was being converted, and what there is of it will be deleted
    std::uint64_t number = 0;  ///< of removals so far, so that no two are equal

    friend bool operator==(const Removal&, const Removal&) = default;
};

/// Takes jobs off the list on the user's word, however many, without holding the main thread up: a
/// few in each turn of its loop. Those of the last removal are kept for a while, suspended, and can
/// come back; then they end. Main thread only.
class JobRemover {
public:
    /// `taken` is told when all that was to go has left the list.
    JobRemover(Vantor& vantor, JobQueue& queue, std::function<void()> taken);

    /// All of them in the list. What was removed before ends.
    void remove(const std::vector<ConversionJob*>& jobs);
    /// True as long as jobs wait to leave the list.
    [[nodiscard]] bool isRemoving() const { return removing_; }
    /// True inside the end of a job that has left the list before.
    [[nodiscard]] bool isEnding() const { return ending_; }

    /// What can be undone; absent when nothing can.
    [[nodiscard]] Observable<std::optional<Removal>>& undoable() { return undoable_; }
    /// Puts the jobs of the last removal back where they stood. Answers the one that was at work,
    /// which waits to be continued; null when none was.
    [[nodiscard]] ConversionJob* undo();
    /// The last removal cannot be undone any more, if it took a job of this movie.
    void forgetMovie(const std::filesystem::path& movie);
    /// The program ends, and what was removed ends before this returns.
    void finish();

private:
    struct Kept {
        std::unique_ptr<ConversionJob> job{};
        std::int64_t place = 0;
        bool wasAtWork = false;
    };
    void takeSome();
    void take(ConversionJob& job);
    void allTaken();
    void forget();
    void endSome();
    void end(const Kept& kept);

    Vantor& vantor_;
    JobQueue& queue_;
    std::function<void()> taken_;
    std::vector<ConversionJob*> waiting_;  ///< in the list, taken from the end
    bool removing_ = false;
    std::vector<Kept> kept_;     ///< of the last removal
    std::vector<Kept> leaving_;  ///< for good
    bool ending_ = false;
    Removal removal_;
    Observable<std::optional<Removal>> undoable_;
    std::unique_ptr<Timer> undoTime_;
    Subscription subscription_;
    Errands errands_;
};

}  // namespace reelvane
