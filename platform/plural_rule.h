#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace reelvane {

/// Which form of a text goes with a number in one language: "one movie", "two movies". Any thread.
class PluralRule {
public:
    /// The rule that a gettext catalogue's head gives as a C expression, such as
    /// "Plural-Forms: nplurals=2; plural=(n != 1);". English where it gives none that can be read.
    explicit PluralRule(std::string_view catalogueHead = {});

    /// The number of the form, from 0 on.
    [[nodiscard]] std::size_t form(std::uint64_t count) const;

private:
    std::string expression_;
};

}  // namespace reelvane
