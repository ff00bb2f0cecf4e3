#include "app/file_removals.h"

#include <utility>

#include "support/dispatch.h"

namespace reelvane {

void FileRemovals::remove(Work deletion, Work then) {
    if (finishing_) {
        deletion();
        then();
        return;
    }
    const auto number = ++last_;
    underWay_.emplace(number, Removal{.deletion = deletion, .then = std::move(then)});
    dispatch_async_back(vantor_, [this, &vantor = vantor_, alive = std::weak_ptr(alive_),
                                  deletion = std::move(deletion), number] {
        deletion();
        dispatch_async_main(vantor, [this, alive, number] {
            if (alive.lock()) deleted(number);
        });
    });
}

void FileRemovals::deleted(std::uint64_t number) {
    const auto removal = underWay_.extract(number);
    if (!removal.empty()) removal.mapped().then();
}

void FileRemovals::finish() {
    finishing_ = true;
    for (const auto& [number, removal] : std::exchange(underWay_, {})) {
        removal.deletion();
        removal.then();
    }
}

}  // namespace reelvane
