#pragma once

#include <string>
#include <string_view>

namespace reelvane {

/// The translated texts of the program. Any thread.
class Translations {
public:
    virtual ~Translations() = default;
    /// The translation into the user's language; the text itself when there is none.
    [[nodiscard]] virtual std::string localized(std::string_view text) const = 0;
};

}  // namespace reelvane
