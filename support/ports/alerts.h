#pragma once

#include <optional>
#include <string>
#include <vector>

namespace reelvane {

/// The number of the button that ended an alert: the first button answers 1000, and so on.
using ButtonResult = int;
inline constexpr ButtonResult kFirstButton = 1000;
inline constexpr ButtonResult kSecondButton = 1001;
inline constexpr ButtonResult kThirdButton = 1002;

/// The one value that an alert may ask for beside its buttons.
struct AlertAccessory {
    enum class Kind { None, Checkbox, Input, SecureInput, Text, Color, PopUp, RadioButtons };
    Kind kind = Kind::None;
    double width = 0;                  ///< in points
    double height = 0;                 ///< in points; for radio buttons the height of one row
    std::string label{};               ///< the checkbox's title
    std::vector<std::string> items{};  ///< of a pop-up menu or a column of radio buttons
    std::string text{};                ///< what a text field or a colour well starts with
    int index = 0;                     ///< the item selected at first, or the checkbox's state
};

struct AlertContent {
    std::string title{};
    std::string message{};
    std::vector<std::string> buttons{};             ///< in order; at least one
    std::optional<std::string> suppressionTitle{};  ///< the title of the "don't warn again" box
    AlertAccessory accessory{};
    std::string image{};  ///< the resource shown beside the text, as "ok.png"; empty: the program's
    bool destructive = false;  ///< all buttons but the one that cancels throw something away
    std::string cancelTitle = "Cancel";  ///< of the button that changes nothing, if there is one
};

struct AlertAnswer {
    ButtonResult button = kFirstButton;
    bool suppressed = false;  ///< the suppression box was ticked
    std::string text{};       ///< what a text accessory holds at the end
    int index = 0;            ///< what a checkbox or list accessory holds at the end
};

/// Shows a modal message box, in front of all else, and answers how it ended.
/// Main thread only; blocks until the user has answered.
class Alerts {
public:
    virtual ~Alerts() = default;
    [[nodiscard]] virtual AlertAnswer runModal(const AlertContent& content) = 0;
};

}  // namespace reelvane
