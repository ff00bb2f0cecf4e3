#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "media/vetting.h"
#include "support/observable.h"

namespace reelvane {

class Vantor;

/// A file that was not taken, and why.
struct RefusedFile {
    std::filesystem::path file{};
    std::string reason{};
};

/// The files that were opened with others and not taken, kept until the user has read of them: a
/// batch is not held up by an alert for each. Main thread only.
class RefusedFiles {
public:
    [[nodiscard]] const std::vector<RefusedFile>& list() const { return list_; }
    void add(RefusedFile refused) {
        list_.push_back(std::move(refused));
        observers_.notify();
    }
    void clear() {
        list_.clear();
        observers_.notify();
    }
    /// Told after each addition, and when the list was cleared.
    [[nodiscard]] Subscription observe(std::function<void()> changed) {
        return observers_.add(std::move(changed));
    }

private:
    std::vector<RefusedFile> list_;
    Observers<> observers_;
};

/// What the user is told of files as they are taken in: of a single one by its alerts. An alert for
/// each of several would hold them up: who has gone finds them all standing. They get a list, or a
/// note of their job. Main thread only.
class IntakeMessages {
public:
    /// `unattended`: nobody is there to be held up.
    IntakeMessages(Vantor& vantor, bool unattended) : vantor_(vantor), unattended_(unattended) {}

    /// So many movies came; `joined`: to others that are still being taken in.
    void movies(std::size_t count, bool joined) { batch_ = (joined ? batch_ : 0) + count; }
    [[nodiscard]] bool isOneOfSeveral() const;

    /// Of a single movie that is taken.
    void tellOfTaken(const std::vector<VettingAlert>& alerts);
    /// Of a movie that is not taken. Where nobody is there, who follows the refusals is told alone.
    void tellOfRefused(const std::filesystem::path& file, const std::vector<VettingAlert>& alerts);
    /// Of what was opened and is neither movie nor subtitle file; `alone`: nothing else was.
    void tellOfLeftOut(std::vector<RefusedFile> leftOut, bool alone);
    /// What the alerts of a movie that is taken say, but for those that the user has silenced.
    [[nodiscard]] std::vector<std::string> notes(const std::vector<VettingAlert>& alerts) const;

    [[nodiscard]] RefusedFiles& refusedFiles() { return refusedFiles_; }

private:
    Vantor& vantor_;
    bool unattended_ = false;
    std::size_t batch_ = 0;  // movies that came since there were none
    RefusedFiles refusedFiles_;
};

}  // namespace reelvane
