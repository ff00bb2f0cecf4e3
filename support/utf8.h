#pragma once

#include <cstddef>
#include <string>
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

/// Whether a character steers what shows it instead of being shown: the control characters, and
/// what separates lines or turns the direction of writing (Unicode 15, general categories Cc, Zl
/// and Zp, property Bidi_Control).
[[nodiscard]] bool isSteering(char32_t character);

/// What a terminal or a line of a log may be sent of a text: valid UTF-8, with U+FFFD for every
/// character that steers, so that no name of a file or track can.
[[nodiscard]] std::string printable(std::string_view text);
/// The same for a text of several lines, whose newlines are its own.
[[nodiscard]] std::string printableLines(std::string_view text);

/// Where the last character of a text, which must not be empty, begins.
[[nodiscard]] std::size_t lastCharacterStart(std::string_view text);

}  // namespace reelvane
