#include "support/alerts.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "support/alert_queue.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/dispatcher.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

std::string versionKey(const Vantor& vantor, std::string_view identifier) {
    return makeString("_%@_%@_asked", identifier, vantor.appVersionString());
}

AlertContent translated(const Vantor& vantor, AlertContent content) {
    const auto translate = [&vantor](std::string& text) { text = localized(vantor, text); };
    translate(content.title);
    translate(content.message);
    std::ranges::for_each(content.buttons, translate);
    if (content.suppressionTitle) translate(*content.suppressionTitle);
    translate(content.accessory.label);
    translate(content.cancelTitle);
    return content;
}

void warnUnlessSilenced(Vantor& vantor, const SuppressibleWarning& warning,
                        const std::string& key) {
    if (vantor.preferences().defaultInt(key) != 0) return;
    const auto answer = runAlert(vantor, {.title = warning.title,
                                          .message = warning.message,
                                          .buttons = {warning.button},
                                          .suppressionTitle = warning.suppressionTitle});
    vantor.preferences().setDefaultInt(key, answer.suppressed ? 1 : 0);
}

void warnOnMainThread(Vantor& vantor, const SuppressibleWarning& warning, std::string key) {
    auto warn = [&vantor, warning, key = std::move(key)] {
        vantor.alertQueue().whenFree(
            [&vantor, warning, key] { warnUnlessSilenced(vantor, warning, key); });
    };
    auto& dispatcher = vantor.ports().dispatcher;
    if (dispatcher.isMainThread()) {
        warn();
    } else {
        dispatcher.asyncMain(std::move(warn));
    }
}

using Kind = AlertAccessory::Kind;

constexpr double kWidth = 310;
constexpr double kLineHeight = 24;
constexpr double kTextHeight = 200;
constexpr double kMatrixWidth = 269;
constexpr double kMatrixRowHeight = 17;
constexpr std::size_t kLongestItem = 150;
constexpr std::size_t kShownEnd = 70;

AlertAnswer ask(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                AlertAccessory accessory) {
    AlertContent content{.title = std::string(prompt), .accessory = std::move(accessory)};
    content.buttons.assign(buttons.begin(),
                           buttons.begin() + std::min<std::ptrdiff_t>(3, std::ssize(buttons)));
    if (content.buttons.empty()) content.buttons.emplace_back("OK");
    return runAlert(vantor, std::move(content));
}

ButtonResult askForText(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                        AlertAccessory accessory, std::string& text) {
    auto answer = ask(vantor, prompt, buttons, std::move(accessory));
    text = std::move(answer.text);
    return answer.button;
}

ButtonResult askForItem(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                        AlertAccessory accessory, std::size_t& selected) {
    const auto answer = ask(vantor, prompt, buttons, std::move(accessory));
    selected = static_cast<std::size_t>(std::max(0, answer.index));
    return answer.button;
}

std::string shownItem(const std::string& item) {
    const auto count = Fennimar::characterCount(item);
    if (count <= kLongestItem) return item;
    const auto withoutEnd = Fennimar::clamp(item, count - kShownEnd);
    return makeString("%@ […] %@", Fennimar::clamp(item, kShownEnd),
                      item.substr(withoutEnd.size()));
}

}  // namespace

AlertAnswer runAlert(Vantor& vantor, AlertContent content) {
    return vantor.alertQueue().ask(translated(vantor, std::move(content)));
}

ButtonResult alert(Vantor& vantor, std::string_view title, std::string_view message,
                   std::string_view firstButton, std::string_view secondButton,
                   std::string_view thirdButton) {
    AlertContent content{.title = std::string(title), .message = std::string(message)};
    for (const auto button : {firstButton, secondButton, thirdButton}) {
        if (!button.empty()) content.buttons.emplace_back(button);
    }
    if (content.buttons.size() > 1) return runAlert(vantor, std::move(content)).button;
    vantor.alertQueue().tell(translated(vantor, std::move(content)));
    return kFirstButton;
}

ButtonResult alert_apptitled(Vantor& vantor, std::string_view message, std::string_view firstButton,
                             std::string_view secondButton, std::string_view thirdButton) {
    return alert(vantor, vantor.appName(), message, firstButton, secondButton, thirdButton);
}

ButtonResult cautiousButton(const AlertContent& content) {
    const auto& buttons = content.buttons;
    const auto cancel = std::find(buttons.begin(), buttons.end(), content.cancelTitle);
    const auto count = std::max<std::ptrdiff_t>(std::ssize(buttons), 1);
    return kFirstButton + static_cast<ButtonResult>(
                              cancel != buttons.end() ? cancel - buttons.begin() : count - 1);
}

void alert_dontwarnagain_version(Vantor& vantor, const SuppressibleWarning& warning) {
    warnOnMainThread(vantor, warning, versionKey(vantor, warning.identifier));
}

void alert_dontwarnagain_ever(Vantor& vantor, const SuppressibleWarning& warning) {
    warnOnMainThread(vantor, warning, makeString("_%@_asked", warning.identifier));
}

bool isSilenced(const Vantor& vantor, std::string_view identifier) {
    return vantor.preferences().defaultInt(versionKey(vantor, identifier)) != 0;
}

void alert_warnagain(Vantor& vantor) {
    vantor.preferences().edit([](PreferenceValues& values) {
        std::erase_if(values, [](const auto& stored) {
            return stored.first.starts_with('_') && stored.first.ends_with("_asked");
        });
    });
}

ButtonResult alert_checkbox(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                            std::string_view checkboxTitle, bool& checked) {
    const auto answer = ask(vantor, prompt, buttons,
                            {.kind = Kind::Checkbox,
                             .width = kWidth,
                             .height = kLineHeight,
                             .label = std::string(checkboxTitle),
                             .index = checked ? 1 : 0});
    checked = answer.index != 0;
    return answer.button;
}

ButtonResult alert_input(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                         std::string& text) {
    return askForText(vantor, prompt, buttons,
                      {.kind = Kind::Input, .width = kWidth, .height = kLineHeight}, text);
}

ButtonResult alert_inputsecure(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                               std::string& text) {
    return askForText(vantor, prompt, buttons,
                      {.kind = Kind::SecureInput, .width = kWidth, .height = kLineHeight}, text);
}

ButtonResult alert_inputtext(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                             std::string& text) {
    return askForText(vantor, prompt, buttons,
                      {.kind = Kind::Text, .width = kWidth, .height = kTextHeight, .text = text},
                      text);
}

ButtonResult alert_colorwell(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                             std::string& color) {
    return askForText(vantor, prompt, buttons,
                      {.kind = Kind::Color, .width = kWidth, .height = kLineHeight, .text = color},
                      color);
}

ButtonResult alert_selection_popup(Vantor& vantor, std::string_view prompt,
                                   const std::vector<std::string>& items,
                                   const ButtonTitles& buttons, std::size_t& selected) {
    return askForItem(vantor, prompt, buttons,
                      {.kind = Kind::PopUp,
                       .width = kWidth,
                       .height = kLineHeight,
                       .items = items,
                       .index = selected < items.size() ? static_cast<int>(selected) : 0},
                      selected);
}

ButtonResult alert_selection_matrix(Vantor& vantor, std::string_view prompt,
                                    const std::vector<std::string>& items,
                                    const ButtonTitles& buttons, std::size_t& selected) {
    return askForItem(vantor, prompt, buttons,
                      {.kind = Kind::RadioButtons,
                       .width = kMatrixWidth,
                       .height = kMatrixRowHeight,
                       .items = Fennimar::mapped(items, shownItem)},
                      selected);
}

}  // namespace reelvane
