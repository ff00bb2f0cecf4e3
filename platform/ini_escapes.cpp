#include "platform/ini_escapes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <glib.h>
#include <optional>

namespace reelvane {

namespace {

struct NamedEscape {
    char byte;
    char letter;
};
constexpr auto kNamedEscapes =
    std::to_array<NamedEscape>({{'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {' ', 's'}, {'\\', '\\'}});

std::string hexadecimal(char byte) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    return {kDigits[value / 16U], kDigits[value % 16U]};
}

/// The byte that the text's two hexadecimal digits at `position` stand for.
std::optional<char> byteAt(std::string_view text, std::size_t position) {
    if (position + 2 > text.size()) return std::nullopt;
    const int high = g_ascii_xdigit_value(text[position]);
    const int low = g_ascii_xdigit_value(text[position + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    return static_cast<char>(high * 16 + low);
}

bool isPlainInKey(std::string_view key, std::size_t position) {
    const char byte = key[position];
    if (byte == '%') return key.size() > 1 && !byteAt(key, position + 1);
    return g_ascii_isgraph(byte) && std::string_view("=[]#").find(byte) == std::string_view::npos;
}

std::string escapedByte(char byte) {
    const auto* const named = std::ranges::find(kNamedEscapes, byte, &NamedEscape::byte);
    return named != kNamedEscapes.end() ? std::string{'\\', named->letter}
                                        : "\\x" + hexadecimal(byte);
}

}  // namespace

std::string escapedIniKey(std::string_view key) {
    if (key.empty()) return "%";
    std::string text;
    for (std::size_t i = 0; i < key.size(); ++i) {
        // "Encoding" is a key that key files keep for themselves.
        const bool plain = isPlainInKey(key, i) && (i > 0 || key != "Encoding");
        text += plain ? std::string(1, key[i]) : '%' + hexadecimal(key[i]);
    }
    return text;
}

std::string unescapedIniKey(std::string_view text) {
    if (text.find('%') == std::string_view::npos) return std::string(text);
    if (text == "%") return {};
    std::string key;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = text[i] == '%' ? byteAt(text, i + 1) : std::nullopt;
        key += byte.value_or(text[i]);
        if (byte) i += 2;
    }
    return key;
}

std::string escapedIniValue(std::string_view value) {
    std::string text;
    const char* valid = value.data();  // the end of the UTF-8 that begins here
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char* const here = value.data() + i;
        if (here >= valid) g_utf8_validate_len(here, value.size() - i, &valid);
        const bool blankAtEnd = *here == ' ' && (i == 0 || i + 1 == value.size());
        const bool plain = here < valid && !g_ascii_iscntrl(*here) && *here != '\\' && !blankAtEnd;
        text += plain ? std::string(1, *here) : escapedByte(*here);
    }
    return text;
}

std::string unescapedIniValue(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        value += text[i];
        if (text[i] != '\\' || i + 1 == text.size()) continue;
        const auto* const named =
            std::ranges::find(kNamedEscapes, text[i + 1], &NamedEscape::letter);
        if (named != kNamedEscapes.end()) {
            value.back() = named->byte;
            ++i;
        } else if (const auto byte = byteAt(text, i + 2); byte && text[i + 1] == 'x') {
            value.back() = *byte;
            i += 3;
        }
    }
    return value;
}

}  // namespace reelvane
