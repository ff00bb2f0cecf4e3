#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
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

// Lists. What is given is left as it is.

/// What the block makes of each element, in order.
template <typename Element, typename Block>
[[nodiscard]] auto mapped(const std::vector<Element>& list, Block block) {
    std::vector<std::decay_t<std::invoke_result_t<Block&, const Element&>>> result;
    result.reserve(list.size());
    for (const auto& element : list) result.push_back(block(element));
    return result;
}

/// The elements for which the block answers true, in order.
template <typename Element, typename Block>
[[nodiscard]] std::vector<Element> filtered(const std::vector<Element>& list, Block block) {
    std::vector<Element> result;
    std::copy_if(list.begin(), list.end(), std::back_inserter(result), std::move(block));
    return result;
}

/// The list without the elements at these places; places beyond its end are ignored.
template <typename Element>
[[nodiscard]] std::vector<Element> arrayByRemovingObjectsAtIndexes(
    const std::vector<Element>& list, const std::set<std::size_t>& indexes) {
    std::vector<Element> result;
    for (std::size_t index = 0; index < list.size(); ++index) {
        if (!indexes.contains(index)) result.push_back(list[index]);
    }
    return result;
}

/// The texts as the components of one path.
[[nodiscard]] inline std::filesystem::path path(const std::vector<std::string>& components) {
    std::filesystem::path result;
    for (const auto& component : components) result /= component;
    return result;
}

}  // namespace Fennimar

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
