#include "support/strings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace Fennimar {

using reelvane::decodeUtf8;

namespace {

bool isNewline(char32_t character) {
    return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

bool isSpaceSeparator(char32_t character) {
    return character == 0x20 || character == 0xA0 || character == 0x1680 ||
           (character >= 0x2000 && character <= 0x200A) || character == 0x202F ||
           character == 0x205F || character == 0x3000;
}

bool isWhitespaceOrNewline(char32_t character) {
    return character == '\t' || isSpaceSeparator(character) || isNewline(character);
}

std::string_view withoutNumberPrefix(std::string_view text) {
    text = trimmedOfWhitespaceAndNewlines(text);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    return text;
}

}  // namespace

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto character = decodeUtf8(text.substr(at));
        const auto next = at + character.length;
        if (character.valid && isNewline(character.value)) {
            parts.push_back(text.substr(start, at - start));
            start = next;
        }
        at = next;
    }
    parts.push_back(text.substr(start));
    return parts;
}

std::vector<std::string_view> split(std::string_view text, std::string_view separator) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    if (!separator.empty()) {
        for (auto at = text.find(separator); at != std::string_view::npos;
             at = text.find(separator, start)) {
            parts.push_back(text.substr(start, at - start));
            start = at + separator.size();
        }
    }
    parts.push_back(text.substr(start));
    return parts;
}

std::string replaced(std::string_view text, std::string_view what, std::string_view with) {
    std::string result;
    bool first = true;
    for (const auto part : split(text, what)) {
        if (!first) result += with;
        first = false;
        result += part;
    }
    return result;
}

std::string_view trimmedOfWhitespaceAndNewlines(std::string_view text) {
    while (!text.empty()) {
        const auto first = decodeUtf8(text);
        if (!first.valid || !isWhitespaceOrNewline(first.value)) break;
        text.remove_prefix(first.length);
    }
    while (!text.empty()) {
        const auto start = reelvane::lastCharacterStart(text);
        const auto last = decodeUtf8(text.substr(start));
        if (!last.valid || !isWhitespaceOrNewline(last.value)) break;
        text.remove_suffix(text.size() - start);
    }
    return text;
}

std::string_view trimmedOf(std::string_view text, std::string_view characters) {
    const auto first = text.find_first_not_of(characters);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::string_view trimmedTo(std::string_view text, std::string_view characters) {
    const auto first = text.find_first_of(characters);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_of(characters) - first + 1);
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool containsAny(std::string_view text, std::span<const std::string_view> parts) {
    return std::any_of(parts.begin(), parts.end(),
                       [text](std::string_view part) { return contains(text, part); });
}

std::string clamp(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    for (; count > 0 && at < text.size(); --count) at += decodeUtf8(text.substr(at)).length;
    return std::string(text.substr(0, at));
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) at += decodeUtf8(text.substr(at)).length;
    return count;
}

std::string escaped(std::string_view text, std::string_view kept) {
    static constexpr std::string_view kAlwaysKept =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    static constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        if (contains(kAlwaysKept, {&character, 1}) || contains(kept, {&character, 1})) {
            result += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        result += '%';
        result += kDigits[byte >> 4U];
        result += kDigits[byte & 0xFU];
    }
    return result;
}

std::string lowercased(std::string_view text) {
    std::string result(text);
    for (char& character : result) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return result;
}

std::optional<std::string_view> partAfter(std::string_view text, std::string_view separator) {
    const auto at = text.find(separator);
    if (at == std::string_view::npos) return std::nullopt;
    return text.substr(at + separator.size());
}

std::string_view partBefore(std::string_view text, std::string_view separator) {
    return text.substr(0, text.find(separator));
}

int leadingInteger(std::string_view text) {
    text = withoutNumberPrefix(text);
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        return text.starts_with('-') ? std::numeric_limits<int>::min()
                                     : std::numeric_limits<int>::max();
    }
    return value;
}

double leadingDouble(std::string_view text) {
    text = withoutNumberPrefix(text);
    const bool negative = text.starts_with('-');
    // Neither "inf" nor "nan" is a number here, though from_chars would take them.
    const auto digits = text.substr(negative ? 1 : 0);
    if (digits.empty() || !contains(".0123456789", digits.substr(0, 1))) return 0;
    double value = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec == std::errc::result_out_of_range) {
        const std::string_view read(text.data(),
                                    static_cast<std::size_t>(result.ptr - text.data()));
        if (contains(read, "e-") || contains(read, "E-")) return 0;  // too small, not too large
        return negative ? std::numeric_limits<double>::lowest()
                        : std::numeric_limits<double>::max();
    }
    return value;
}

bool isValidUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const auto character = decodeUtf8(text.substr(at));
        if (!character.valid) return false;
        at += character.length;
    }
    return true;
}

std::string validUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto character = decodeUtf8(text.substr(at));
        if (character.valid) {
            result += text.substr(at, character.length);
        } else {
            result += "\xEF\xBF\xBD";
        }
        at += character.length;
    }
    return result;
}

std::string joined(std::span<const std::string> parts, std::string_view separator) {
    std::string result;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) result += separator;
        result += parts[i];
    }
    return result;
}

}  // namespace Fennimar

namespace reelvane {
namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

Utf8Character decodeUtf8(std::string_view text) {
    const Utf8Character invalid{.value = 0, .length = 1, .valid = false};
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return {.value = lead, .length = 1, .valid = true};
    if (lead < 0xC2 || lead > 0xF4) return invalid;

    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (text.size() < length) return invalid;
    char32_t value = lead & (0xFFU >> (length + 1));
    for (const char byte : text.substr(1, length - 1)) {
        if (!isContinuation(byte)) return invalid;
        value = (value << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (overlong || surrogate || value > 0x10FFFF) return invalid;
    return {.value = value, .length = length, .valid = true};
}

bool isSteering(char32_t character) {
    struct Range {
        char32_t first;
        char32_t last;
    };
    static constexpr auto kRanges = std::to_array<Range>({{0x0000, 0x001F},
                                                          {0x007F, 0x009F},
                                                          {0x061C, 0x061C},
                                                          {0x200E, 0x200F},
                                                          {0x2028, 0x202E},
                                                          {0x2066, 0x2069}});
    return std::ranges::any_of(kRanges, [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

std::string printable(std::string_view text) {
    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto character = decodeUtf8(text);
        const bool isShown = character.valid && !isSteering(character.value);
        result += isShown ? text.substr(0, character.length) : kReplacement;
        text.remove_prefix(character.length);
    }
    return result;
}

std::string printableLines(std::string_view text) {
    auto end = text.find('\n');
    auto result = printable(text.substr(0, end));
    while (end != std::string_view::npos) {
        text.remove_prefix(end + 1);
        end = text.find('\n');
        result += '\n' + printable(text.substr(0, end));
    }
    return result;
}

std::size_t lastCharacterStart(std::string_view text) {
    const auto last = text.size() - 1;
    for (std::size_t back = 0; back <= std::min<std::size_t>(last, 3); ++back) {
        const auto start = last - back;
        if (isContinuation(text[start])) continue;
        const auto character = decodeUtf8(text.substr(start));
        return character.valid && character.length == back + 1 ? start : last;
    }
    return last;
}

}  // namespace reelvane
