#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "support/observable.h"

namespace reelvane {

class Vantor;

/// 1 once the user wants no rating prompt any more.
inline constexpr std::string_view kDontAskAgainKey = "vantor_dontaskagain";

/// Counts how often the program was of use, over all versions and for this one, and says when the
/// user may be asked for a rating. Main thread only.
class UsageCounter {
public:
    explicit UsageCounter(Vantor& vantor) : vantor_(vantor) {}

    /// How a use is counted and when the user may be asked.
    struct Request {
        int increase = 0;
        int minimumUsagesForRating = 0;
        int usagesNamedInText = 0;
        /// The text may hold [USAGES_ASKREVIEW] and [APPNAME]; asked for only when it is shown.
        std::function<std::string()> feedbackText{};
        bool allowFeedbackNow = false;
        bool forceFeedbackNow = false;
    };
    void increaseUsages(const Request& request);

    [[nodiscard]] int minimumUsagesForRating() const { return minimumUsagesForRating_; }
    [[nodiscard]] Observable<bool>& isRateable() { return isRateable_; }
    /// Told the filled text when the rating prompt is to be opened.
    [[nodiscard]] Subscription observePrompts(std::function<void(const std::string&)> open);

private:
    Vantor& vantor_;
    int minimumUsagesForRating_ = 0;
    std::optional<long long> usages_;  // read once: counting must not wait for the disk
    Observable<bool> isRateable_{false};
    Observers<const std::string&> prompts_;
};

}  // namespace reelvane
