#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "support/observable.h"

namespace reelvane {

/// Lets one at a time do what would slow the others down. Main thread only.
class Turns {
public:
    /// Calls `begin` when all that came before have ended: at once where nobody is there. The turn,
    /// or the place in the queue, ends with the subscription.
    [[nodiscard]] Subscription take(std::function<void()> begin) {
        const auto number = next_++;
        waiting_->emplace(number, begin);
        Subscription turn([list = std::weak_ptr(waiting_), number] {
            if (const auto waiting = list.lock()) end(*waiting, number);
        });
        if (waiting_->size() == 1) begin();
        return turn;
    }
    /// Nobody has a turn or waits for one.
    [[nodiscard]] bool isIdle() const { return waiting_->empty(); }

private:
    using Waiting = std::map<std::uint64_t, std::function<void()>>;

    static void end(Waiting& waiting, std::uint64_t number) {
        const bool hadTurn = waiting.begin()->first == number;
        waiting.erase(number);
        if (!hadTurn || waiting.empty()) return;
        const auto begin = waiting.begin()->second;  // it may end its own turn
        begin();
    }

    // Shared only so that a subscription that outlives this object can tell.
    std::shared_ptr<Waiting> waiting_ = std::make_shared<Waiting>();
    std::uint64_t next_ = 0;
};

}  // namespace reelvane
