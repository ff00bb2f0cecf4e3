#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace reelvane {

/// The translated texts of the program. Any thread.
class Translations {
public:
    virtual ~Translations() = default;
    /// The translation into the user's language; the text itself when there is none.
    [[nodiscard]] virtual std::string localized(std::string_view text) const = 0;
    /// The form that goes with the count in the user's language, which may have more than two; the
    /// English one when there is no translation. The places of the text are still to be filled.
    [[nodiscard]] virtual std::string localized(std::string_view singular, std::string_view plural,
                                                std::uint64_t count) const = 0;
};

}  // namespace reelvane
