#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace reelvane {

class Translations;

/// What the main window's title tells of the queue.
struct QueueSummary {
    bool paused = false;
    std::size_t jobs = 0;
    int queued = 0;
};

/// "Reelvane  [3 Job(s), 2 Queued]", "Reelvane (Paused)" and so on.
[[nodiscard]] std::string windowTitle(const Translations& translations, std::string_view appName,
                                      const QueueSummary& queue);

}  // namespace reelvane
