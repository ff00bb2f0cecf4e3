#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/observable.h"

namespace reelvane {

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

}  // namespace reelvane
