#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "support/ports/alerts.h"
#include "support/ports/panels.h"

namespace reelvane {

class Console;

/// Alerts where nobody watches: each is printed on standard error, or handed to the report of a
/// conversion, and answered at once with the most cautious button.
class StderrAlerts final : public Alerts {
public:
    using Handler = std::function<void(const AlertContent&)>;

    explicit StderrAlerts(Console& console) : console_(console) {}

    /// Where alerts go instead of standard error; an empty function takes that back.
    void setHandler(Handler handler) { handler_ = std::move(handler); }
    [[nodiscard]] AlertAnswer runModal(const AlertContent& content) override;

private:
    Console& console_;
    Handler handler_;
};

/// Alerts that wait until it is known whether the failure of a file says the same, before it or
/// after it: then they need not be told. Main thread only.
class HeldAlerts {
public:
    void add(const AlertContent& alert);
    /// A failure has said this. Its alert may come much later.
    void drop(const std::string& message);
    /// What is left to be told, in order.
    [[nodiscard]] std::vector<AlertContent> take();

private:
    std::vector<AlertContent> alerts_;
    std::set<std::string, std::less<>> said_;
};

/// Panels where nobody can choose: every one is cancelled at once.
class DecliningPanels final : public Panels {
public:
    void open(const OpenPanelRequest& /*request*/,
              std::function<void(std::vector<std::filesystem::path>)> answer) override {
        answer({});
    }
    void save(const SavePanelRequest& /*request*/,
              std::function<void(std::optional<std::filesystem::path>)> answer) override {
        answer(std::nullopt);
    }
};

}  // namespace reelvane
