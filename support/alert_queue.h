#pragma once

#include <deque>
#include <functional>
#include <string>

#include "support/errands.h"
#include "support/ports/alerts.h"
#include "support/ports/dispatcher.h"
#include "support/ports/translations.h"

namespace reelvane {

/// Shows one alert at a time, however many are raised while one is open. Only a question, whose
/// answer somebody waits for, comes in front of the open one. Main thread only.
class AlertQueue {
public:
    /// What several are shown under at once is called `title`.
    AlertQueue(Alerts& alerts, Dispatcher& dispatcher, const Translations& translations,
               std::string title);

    /// Shows the alert in front of all else and answers how it ended. Blocks.
    AlertAnswer ask(const AlertContent& content);
    /// Shows an alert that asks nothing: now, or once the open one is answered. Those that have
    /// waited are shown as one.
    void tell(AlertContent content);
    /// Does what shows an alert: now, or once the open one is answered.
    void whenFree(std::function<void()> show);

    [[nodiscard]] bool isOpen() const { return open_ > 0; }

private:
    /// An alert that asks nothing, or what shows another one.
    struct Waiting {
        AlertContent content{};
        std::function<void()> show{};
    };

    void showNextLater();
    void showNext();
    [[nodiscard]] AlertContent takeTold();

    Alerts& alerts_;
    const Translations& translations_;
    std::string title_;
    int open_ = 0;
    std::deque<Waiting> waiting_;
    Errands errands_;
};

}  // namespace reelvane
