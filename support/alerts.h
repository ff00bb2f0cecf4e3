#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/ports/alerts.h"

namespace reelvane {

class Vantor;

// The titles, messages and labels given to these functions are shown in the user's language. One
// that holds values is no text of the catalogues: its format has been translated by the caller.

/// Shows a modal alert, in front of one that is open. Main thread only; blocks.
AlertAnswer runAlert(Vantor& vantor, AlertContent content);

/// The same; absent (empty) button titles add no button. One with a single button asks nothing:
/// while another alert is open it waits for that one, and kFirstButton is answered at once.
ButtonResult alert(Vantor& vantor, std::string_view title, std::string_view message,
                   std::string_view firstButton, std::string_view secondButton = {},
                   std::string_view thirdButton = {});

/// The same with the application's name as title.
ButtonResult alert_apptitled(Vantor& vantor, std::string_view message, std::string_view firstButton,
                             std::string_view secondButton = {}, std::string_view thirdButton = {});

/// The button that changes least, which answers where nobody chooses one: the one that cancels,
/// else the last.
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
/// True while the user wants no more of these warnings in this version.
[[nodiscard]] bool isSilenced(const Vantor& vantor, std::string_view identifier);
/// Every silenced warning is shown again from now on.
void alert_warnagain(Vantor& vantor);

// Alerts that ask for one value. The first three button titles are used. The value is written back
// whichever button ends the alert. Main thread only; they block.

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
