#include "support/alerts.h"

#include <utility>

#include "support/make_string.h"
#include "support/ports/dispatcher.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

void warnUnlessSilenced(Vantor& vantor, const SuppressibleWarning& warning,
                        const std::string& key) {
    if (vantor.preferences().defaultInt(key) != 0) return;
    const auto answer =
        vantor.ports().alerts.runModal({.title = warning.title,
                                        .message = warning.message,
                                        .buttons = {warning.button},
                                        .suppressionTitle = warning.suppressionTitle});
    vantor.preferences().setDefaultInt(key, answer.suppressed ? 1 : 0);
}

void warnOnMainThread(Vantor& vantor, const SuppressibleWarning& warning, std::string key) {
    auto& dispatcher = vantor.ports().dispatcher;
    if (dispatcher.isMainThread()) {
        warnUnlessSilenced(vantor, warning, key);
        return;
    }
    dispatcher.asyncMain(
        [&vantor, warning, key = std::move(key)] { warnUnlessSilenced(vantor, warning, key); });
}

}  // namespace

ButtonResult alert(Vantor& vantor, std::string_view title, std::string_view message,
                   std::string_view firstButton, std::string_view secondButton,
                   std::string_view thirdButton) {
    AlertContent content{.title = std::string(title), .message = std::string(message)};
    for (const auto button : {firstButton, secondButton, thirdButton}) {
        if (!button.empty()) content.buttons.emplace_back(button);
    }
    return vantor.ports().alerts.runModal(content).button;
}

ButtonResult alert_apptitled(Vantor& vantor, std::string_view message, std::string_view firstButton,
                             std::string_view secondButton, std::string_view thirdButton) {
    return alert(vantor, vantor.appName(), message, firstButton, secondButton, thirdButton);
}

void alert_dontwarnagain_version(Vantor& vantor, const SuppressibleWarning& warning) {
    warnOnMainThread(vantor, warning,
                     makeString("_%@_%@_asked", warning.identifier, vantor.appVersionString()));
}

void alert_dontwarnagain_ever(Vantor& vantor, const SuppressibleWarning& warning) {
    warnOnMainThread(vantor, warning, makeString("_%@_asked", warning.identifier));
}

}  // namespace reelvane
