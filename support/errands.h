#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "support/ports/dispatcher.h"

namespace reelvane {

/// Asks something off the main thread and brings the answer back, unless the asker has gone
/// meanwhile. A member of the asker, whose end drops every answer. Main thread only.
class Errands {
public:
    explicit Errands(Dispatcher& dispatcher) : dispatcher_(dispatcher) {}

    /// Runs `ask` on the background queue, then `then` on the main thread with what it answered.
    /// `ask` may run after the asker's end, so it owns what it needs; `then` never does.
    template <typename Ask, typename Then>
    void run(Ask ask, Then then) {
        dispatcher_.asyncBackground([&dispatcher = dispatcher_, alive = std::weak_ptr(alive_),
                                     ask = std::move(ask), then = std::move(then)]() mutable {
            if constexpr (std::is_void_v<std::invoke_result_t<Ask&>>) {
                ask();
                dispatcher.asyncMain([alive, then = std::move(then)]() mutable {
                    if (alive.lock()) then();
                });
            } else {
                // Shared, because work can be copied and not every answer can.
                auto answer = std::make_shared<std::invoke_result_t<Ask&>>(ask());
                dispatcher.asyncMain([alive, answer, then = std::move(then)]() mutable {
                    if (alive.lock()) then(std::move(*answer));
                });
            }
        });
    }

    /// Runs `work` in a later turn of the main loop.
    template <typename Later>
    void later(Later work) {
        dispatcher_.asyncMain([alive = std::weak_ptr(alive_), work = std::move(work)]() mutable {
            if (alive.lock()) work();
        });
    }

    /// The call-back, which does nothing once the asker has gone.
    template <typename Then>
    [[nodiscard]] auto whileHere(Then then) const {
        return [alive = std::weak_ptr(alive_), then = std::move(then)](const auto&... told) {
            if (alive.lock()) then(told...);
        };
    }

    /// From here on nobody waits for what was asked before.
    void forget() { alive_ = std::make_shared<const bool>(true); }

private:
    Dispatcher& dispatcher_;
    // Shared only to be watched by work that ends after the asker.
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace reelvane
