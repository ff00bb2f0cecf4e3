#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "support/ports/dispatcher.h"

namespace reelvane {

class Vantor;

/// Files that are being deleted in the background, where a disk that does not answer holds nobody
/// up. Main thread only.
class FileRemovals {
public:
    explicit FileRemovals(Vantor& vantor) : vantor_(vantor) {}

    /// Runs the deletion in the background and `then` on the main thread.
    void remove(Work deletion, Work then);
    /// The program ends, and its main loop with it: all that is not yet known to be deleted is
    /// deleted before this returns, and whatever comes later is deleted at once.
    void finish();

private:
    struct Removal {
        Work deletion{};
        Work then{};
    };
    void deleted(std::uint64_t number);

    Vantor& vantor_;
    std::map<std::uint64_t, Removal> underWay_;
    std::uint64_t last_ = 0;
    bool finishing_ = false;
    // Shared only so that a deletion that ends after this object can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
