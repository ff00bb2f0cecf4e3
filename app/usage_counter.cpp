#include "app/usage_counter.h"

#include <utility>

#include "app/launch_corrections.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::string_view kUsagesKey = "vantor_usages";

}  // namespace

void UsageCounter::increaseUsages(const Request& request) {
    auto& preferences = vantor_.preferences();
    minimumUsagesForRating_ = request.minimumUsagesForRating;
    if (!usages_) usages_ = preferences.defaultInt(kUsagesKey);
    if (request.increase != 0) {
        preferences.addToInt(kUsagesKey, request.increase);
        preferences.addToInt(versionUsagesKey(vantor_.appVersionString()), request.increase);
    }
    *usages_ += request.increase;
    isRateable_.set(minimumUsagesForRating_ >= 1 && *usages_ > minimumUsagesForRating_);
    if (!request.allowFeedbackNow || !request.forceFeedbackNow) return;
    const auto counted = Fennimar::replaced(request.feedbackText(), "[USAGES_ASKREVIEW]",
                                            std::to_string(request.usagesNamedInText));
    prompts_.notify(Fennimar::replaced(counted, "[APPNAME]", vantor_.appName()));
}

Subscription UsageCounter::observePrompts(std::function<void(const std::string&)> open) {
    return prompts_.add(std::move(open));
}

}  // namespace reelvane
