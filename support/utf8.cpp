#include "support/utf8.h"

#include <algorithm>
#include <array>

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
