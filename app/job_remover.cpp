#include "app/job_remover.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::chrono::milliseconds kTimeInTurn(6);

bool losesWork(const ConversionJob& job) {
    return job.state() == ConversionJobState::Converting ||
           job.state() == ConversionJobState::Paused;
}

}  // namespace

JobRemover::JobRemover(Vantor& vantor, JobQueue& queue, std::function<void()> taken)
    : vantor_(vantor),
      queue_(queue),
      taken_(std::move(taken)),
      subscription_(
          queue.observeMembership([this](ConversionJob& job, JobQueue::Membership membership) {
              if (membership == JobQueue::Membership::Ends) std::erase(waiting_, &job);
          })),
      errands_(vantor.ports().dispatcher) {}

void JobRemover::remove(const std::vector<ConversionJob*>& jobs) {
    if (jobs.empty()) return;
    const std::unordered_set<const ConversionJob*> waiting(waiting_.begin(), waiting_.end());
    std::ranges::copy_if(jobs, std::back_inserter(waiting_),
                         [&waiting](const auto* job) { return !waiting.contains(job); });
    if (std::exchange(removing_, true)) return;
    forget();
    removal_ = {.number = removal_.number + 1};
    takeSome();
}

void JobRemover::takeSome() {
    const auto& dispatcher = vantor_.ports().dispatcher;
    const auto turnEnds = dispatcher.now() + kTimeInTurn;
    while (!waiting_.empty() && dispatcher.now() < turnEnds) {
        auto& job = *waiting_.back();
        waiting_.pop_back();
        take(job);
    }
    if (waiting_.empty()) {
        allTaken();
    } else {
        errands_.later([this] { takeSome(); });
    }
}

void JobRemover::take(ConversionJob& job) {
    ++removal_.jobs;
    removal_.fileName = job.fileInfo().fileName;
    removal_.losesWork = removal_.losesWork || losesWork(job);
    Kept kept{.place = queue_.placeOf(job),
              .wasAtWork = job.isStarting() || job.state() == ConversionJobState::Converting};
    kept.job = queue_.takeJob(job);
    kept.job->setAside();
    kept_.push_back(std::move(kept));
}

void JobRemover::allTaken() {
    removing_ = false;
    undoTime_ = vantor_.ports().dispatcher.every(kUndoTime, [this] { forget(); });
    if (!kept_.empty()) undoable_.set(removal_);
    taken_();
}

ConversionJob* JobRemover::undo() {
    if (removing_) return nullptr;
    undoTime_.reset();
    ConversionJob* wasAtWork = nullptr;
    for (auto& kept : std::exchange(kept_, {})) {
        auto& job = queue_.putBack(std::move(kept.job), kept.place);
        if (kept.wasAtWork) wasAtWork = &job;
        job.bringBack();
    }
    undoable_.set(std::nullopt);
    return wasAtWork;
}

void JobRemover::forgetMovie(const std::filesystem::path& movie) {
    if (std::ranges::any_of(
            kept_, [&movie](const Kept& kept) { return kept.job->fileInfo().fileURL == movie; })) {
        forget();
    }
}

void JobRemover::forget() {
    undoTime_.reset();
    undoable_.set(std::nullopt);
    const bool busy = !leaving_.empty();
    std::ranges::move(std::exchange(kept_, {}), std::back_inserter(leaving_));
    if (!busy) endSome();
}

void JobRemover::endSome() {
    const auto& dispatcher = vantor_.ports().dispatcher;
    const auto turnEnds = dispatcher.now() + kTimeInTurn;
    while (!leaving_.empty() && dispatcher.now() < turnEnds) {
        const auto kept = std::move(leaving_.back());
        leaving_.pop_back();
        end(kept);
    }
    if (!leaving_.empty()) errands_.later([this] { endSome(); });
}

void JobRemover::end(const Kept& kept) {
    ending_ = true;
    kept.job->remove();
    ending_ = false;
}

void JobRemover::finish() {
    waiting_.clear();
    forget();
    for (const auto& kept : std::exchange(leaving_, {})) end(kept);
}

}  // namespace reelvane
