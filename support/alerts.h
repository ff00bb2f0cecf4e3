#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/ports/alerts.h"

namespace reelvane {

class Vantor;

/// Shows a modal alert; absent (empty) button titles add no button. Main thread only; blocks.
ButtonResult alert(Vantor& vantor, std::string_view title, std::string_view message,
                   std::string_view firstButton, std::string_view secondButton = {},
                   std::string_view thirdButton = {});

/// The same with the application's name as title.
ButtonResult alert_apptitled(Vantor& vantor, std::string_view message, std::string_view firstButton,
                             std::string_view secondButton = {}, std::string_view thirdButton = {});

/// The button that changes least, which answers where nobody chooses one: "Cancel", else the last.
[[nodiscard]] ButtonResult cautiousButton(const AlertContent& content);

/// A warning that the user can silence.
struct SuppressibleWarning {
    std::string identifier{};
    std::string title{};
    std::string message{};
    std::string button{};
    std::string suppressionTitle{};
};

/// Shows the warning until its box was ticked in this version of the application. Any thread: off
/// the main thread it returns at once and the warning follows on the main thread.
void alert_dontwarnagain_version(Vantor& vantor, const SuppressibleWarning& warning);
/// The same, silenced once and for all.
void alert_dontwarnagain_ever(Vantor& vantor, const SuppressibleWarning& warning);
/// Every silenced warning is shown again from now on.
void alert_warnagain(Vantor& vantor);

}  // namespace reelvane
