#pragma once

#include <cstddef>
#include <string_view>

namespace reelvane {

/// One character at the start of a text.
struct Utf8Character {
    char32_t value = 0;
    std::size_t length = 0;  ///< in bytes; 1 for a byte that is not UTF-8
    bool valid = false;
};

/// Reads the first character of a text, which must not be empty. Over-long forms, surrogates and
/// values above U+10FFFF are not valid (Unicode 15, table 3-7).
[[nodiscard]] Utf8Character decodeUtf8(std::string_view text);

/// Where the last character of a text, which must not be empty, begins.
[[nodiscard]] std::size_t lastCharacterStart(std::string_view text);

}  // namespace reelvane
