#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Helpers on texts and lists of texts. Text is UTF-8; views point into the text that was given.
/// All are safe from any thread.
namespace Fennimar {

/// The text split at every newline character (U+000A to U+000D, U+0085, U+2028, U+2029); empty
/// lines are kept, so a carriage return with a line feed ends two lines.
[[nodiscard]] std::vector<std::string_view> lines(std::string_view text);
/// The parts between the separators; one part, the text itself, when there is none.
[[nodiscard]] std::vector<std::string_view> split(std::string_view text,
                                                  std::string_view separator);
[[nodiscard]] std::string replaced(std::string_view text, std::string_view what,
                                   std::string_view with);
/// White space is what Unicode calls a space separator, and the tab.
[[nodiscard]] std::string_view trimmedOfWhitespaceAndNewlines(std::string_view text);
/// Without the leading and trailing characters that stand in the set (ASCII).
[[nodiscard]] std::string_view trimmedOf(std::string_view text, std::string_view characters);
/// Without the leading and trailing characters that do not stand in the set (ASCII).
[[nodiscard]] std::string_view trimmedTo(std::string_view text, std::string_view characters);
[[nodiscard]] bool contains(std::string_view text, std::string_view part);
[[nodiscard]] bool containsAny(std::string_view text, std::span<const std::string_view> parts);
/// The first `count` characters (code points) if the text is longer, else the text.
[[nodiscard]] std::string clamp(std::string_view text, std::size_t count);
/// The number of characters (code points); bytes that are not UTF-8 count as one each.
[[nodiscard]] std::size_t characterCount(std::string_view text);
/// What a URL's query may hold beside letters and digits.
inline constexpr std::string_view kQueryMarks = "-._~!$&'()*+,;=:@/?";
/// Percent-encoded but for ASCII letters, digits and the `kept` characters.
[[nodiscard]] std::string escaped(std::string_view text, std::string_view kept = kQueryMarks);
/// ASCII digits only.
[[nodiscard]] constexpr bool isDigit(char character) {
    return character >= '0' && character <= '9';
}
/// ASCII letters in lower case; others are left alone.
[[nodiscard]] std::string lowercased(std::string_view text);
/// The part after the first occurrence of the separator; absent when it does not occur.
[[nodiscard]] std::optional<std::string_view> partAfter(std::string_view text,
                                                        std::string_view separator);
/// The part before the first occurrence of the separator; the whole text when there is none.
[[nodiscard]] std::string_view partBefore(std::string_view text, std::string_view separator);

/// The integer that the text begins with, after white space; 0 when there is none. Numbers too
/// large for the type read as its largest.
[[nodiscard]] int leadingInteger(std::string_view text);
/// The decimal number that the text begins with, after white space; 0 when there is none.
[[nodiscard]] double leadingDouble(std::string_view text);

[[nodiscard]] bool isValidUtf8(std::string_view text);
/// The text with every byte that is not part of valid UTF-8 replaced by U+FFFD.
[[nodiscard]] std::string validUtf8(std::string_view text);

[[nodiscard]] std::string joined(std::span<const std::string> parts, std::string_view separator);

}  // namespace Fennimar
