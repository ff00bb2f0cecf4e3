#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/ports/alerts.h"

/// Alerts that ask for one value. The first three button titles are used. The value is written back
/// whichever button ends the alert. Main thread only; they block.
namespace reelvane {

class Vantor;

using ButtonTitles = std::vector<std::string>;

ButtonResult alert_checkbox(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                            std::string_view checkboxTitle, bool& checked);
/// One line of text, empty at first.
ButtonResult alert_input(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                         std::string& text);
/// The same, masked.
ButtonResult alert_inputsecure(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                               std::string& text);
/// Several lines of text, which start with what `text` holds.
ButtonResult alert_inputtext(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                             std::string& text);
/// A colour as "#rrggbb".
ButtonResult alert_colorwell(Vantor& vantor, std::string_view prompt, const ButtonTitles& buttons,
                             std::string& color);
/// A pop-up menu; starts at `selected`, or at the first item when there is no such item.
ButtonResult alert_selection_popup(Vantor& vantor, std::string_view prompt,
                                   const std::vector<std::string>& items,
                                   const ButtonTitles& buttons, std::size_t& selected);
/// A column of radio buttons, of which the first is selected at the start. Titles of more than 150
/// characters are shown by their ends.
ButtonResult alert_selection_matrix(Vantor& vantor, std::string_view prompt,
                                    const std::vector<std::string>& items,
                                    const ButtonTitles& buttons, std::size_t& selected);

}  // namespace reelvane
