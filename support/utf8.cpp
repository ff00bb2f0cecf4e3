#include "support/utf8.h"

#include <algorithm>

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
