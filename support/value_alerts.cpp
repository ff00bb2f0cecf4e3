#include "support/value_alerts.h"

#include <algorithm>
#include <utility>

#include "support/alerts.h"
#include "support/arrays.h"
#include "support/make_string.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

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
