#include "support/alert_queue.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "support/make_string.h"

namespace reelvane {
namespace {

constexpr std::size_t kMostTold = 30;  // more are counted: nobody reads them

}  // namespace

AlertQueue::AlertQueue(Alerts& alerts, Dispatcher& dispatcher, const Translations& translations,
                       std::string title)
    : alerts_(alerts),
      translations_(translations),
      title_(std::move(title)),
      errands_(dispatcher) {}

AlertAnswer AlertQueue::ask(const AlertContent& content) {
    ++open_;
    auto answer = alerts_.runModal(content);
    --open_;
    showNextLater();
    return answer;
}

void AlertQueue::tell(AlertContent content) {
    if (!isOpen()) {
        ask(content);
    } else {
        waiting_.push_back({.content = std::move(content)});
    }
}

void AlertQueue::whenFree(std::function<void()> show) {
    if (!isOpen()) {
        show();
    } else {
        waiting_.push_back({.show = std::move(show)});
    }
}

void AlertQueue::showNextLater() {
    if (isOpen() || waiting_.empty()) return;
    // Who asked goes on first.
    errands_.later([this] { showNext(); });
}

void AlertQueue::showNext() {
    if (isOpen() || waiting_.empty()) return;
    if (waiting_.front().show) {
        const auto show = std::move(waiting_.front().show);
        waiting_.pop_front();
        show();
        showNextLater();
    } else {
        ask(takeTold());
    }
}

AlertContent AlertQueue::takeTold() {
    std::vector<AlertContent> told;
    std::size_t more = 0;
    for (auto& waiting : waiting_) {
        if (waiting.show) continue;
        const bool known = std::ranges::any_of(told, [&waiting](const AlertContent& other) {
            return other.title == waiting.content.title && other.message == waiting.content.message;
        });
        if (known) continue;
        if (told.size() < kMostTold) {
            told.push_back(std::move(waiting.content));
        } else {
            ++more;
        }
    }
    std::erase_if(waiting_, [](const Waiting& waiting) { return !waiting.show; });
    if (told.size() == 1) return std::move(told.front());
    AlertContent all{.title = title_, .buttons = {translations_.localized("OK")}};
    for (const auto& one : told) {
        if (!all.message.empty()) all.message += "\n\n";
        if (one.title != all.title) all.message += one.title + "\n";
        all.message += one.message;
    }
    if (more > 0) {
        all.message +=
            "\n\n" + makeString(translations_.localized("There was %lu more message.",
                                                        "There were %lu more messages.", more),
                                more);
    }
    return all;
}

}  // namespace reelvane
