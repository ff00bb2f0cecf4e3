#pragma once

#include <set>
#include <string>
#include <vector>

#include "support/ports/alerts.h"

namespace reelvane {

/// Alerts that wait until it is known whether the refusal or the failure of a file says the same,
/// before it or after it: then they need not be told. Main thread only.
class HeldAlerts {
public:
    void add(const AlertContent& alert);
    /// A refusal or failure has said this. Its alert may come much later.
    void drop(const std::string& message);
    /// What is left to be told, in order.
    [[nodiscard]] std::vector<AlertContent> take();

private:
    std::vector<AlertContent> alerts_;
    std::set<std::string, std::less<>> said_;
};

}  // namespace reelvane
