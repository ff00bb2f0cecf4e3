#include "support/preference_text.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <system_error>

#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";

void appendByte(std::string& result, char character) {
    const auto byte = static_cast<unsigned char>(character);
    result += "\\x";
    result += kHexDigits[byte >> 4U];
    result += kHexDigits[byte & 0xFU];
}

/// Escapes whatever would not survive in one line of UTF-8, and the separators that are given.
std::string escape(std::string_view value, std::string_view separators) {
    std::string result;
    result.reserve(value.size());
    for (std::size_t at = 0; at < value.size();) {
        const auto character = decodeUtf8(value.substr(at));
        const char first = value[at];
        const auto bytes = value.substr(at, character.length);
        at += character.length;
        if (first == '\n') {
            result += "\\n";
        } else if (first == '\t') {
            result += "\\t";
        } else if (first == '\r') {
            result += "\\r";
        } else if (first == '\\' || separators.find(first) != std::string_view::npos) {
            result += '\\';
            result += first;
        } else if (!character.valid || character.value < 0x20 || character.value == 0x7F) {
            appendByte(result, first);
        } else {
            result += bytes;
        }
    }
    return result;
}

std::optional<unsigned char> byteFromHex(std::string_view digits) {
    unsigned char byte = 0;
    if (digits.size() != 2) return std::nullopt;
    const auto result = std::from_chars(digits.data(), digits.data() + 2, byte, 16);
    if (result.ec != std::errc() || result.ptr != digits.data() + 2) return std::nullopt;
    return byte;
}

/// A backslash that escapes nothing known stands for itself: a person may have typed it.
std::string unescape(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char next = text[at] == '\\' && at + 1 < text.size() ? text[at + 1] : '\0';
        if (next == 'n' || next == 't' || next == 'r') {
            result += next == 'n' ? '\n' : next == 't' ? '\t' : '\r';
            ++at;
        } else if (next == '\\' || next == ';' || next == '=') {
            result += next;
            ++at;
        } else if (const auto byte =
                       next == 'x' ? byteFromHex(text.substr(at + 2, 2)) : std::nullopt) {
            result += static_cast<char>(*byte);
            at += 3;
        } else {
            result += text[at];
        }
    }
    return result;
}

bool isEnclosed(std::string_view text, char opening, char closing) {
    return text.size() >= 2 && text.front() == opening && text.back() == closing;
}

/// Where the character stands without a backslash before it; the text's size when nowhere.
std::size_t findUnescaped(std::string_view text, char wanted) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == wanted) return at;
        if (text[at] == '\\') ++at;
    }
    return text.size();
}

/// The parts of an enclosed text, still escaped.
std::vector<std::string_view> parts(std::string_view text) {
    text = text.substr(1, text.size() - 2);
    std::vector<std::string_view> result;
    while (!text.empty()) {
        const auto end = findUnescaped(text, ';');
        result.push_back(text.substr(0, end));
        text.remove_prefix(end < text.size() ? end + 1 : end);
    }
    return result;
}

template <typename Number>
std::string numberText(Number value) {
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

}  // namespace

std::string preferenceText(std::string_view value) {
    auto result = escape(value, {});
    // Readers of INI files drop white space at the ends.
    if (result.ends_with(' ')) result.replace(result.size() - 1, 1, "\\x20");
    if (!result.empty() && std::string_view(" ({").find(result.front()) != std::string_view::npos) {
        std::string first;
        appendByte(first, result.front());
        result.replace(0, 1, first);
    }
    return result;
}

std::string preferenceText(int value) {
    return numberText(value);
}

std::string preferenceText(float value) {
    return numberText(value);
}

std::string preferenceText(const std::vector<std::string>& list) {
    std::string result = "(";
    for (const auto& element : list) result += escape(element, ";") + ";";
    return result + ")";
}

std::string preferenceText(const std::map<std::string, std::string, std::less<>>& dictionary) {
    std::string result = "{";
    for (const auto& [key, value] : dictionary) {
        result += escape(key, ";=") + "=" + escape(value, ";=") + ";";
    }
    return result + "}";
}

std::optional<std::string> stringFromPreferenceText(std::string_view text) {
    if (isEnclosed(text, '(', ')') || isEnclosed(text, '{', '}')) return std::nullopt;
    return unescape(text);
}

std::optional<std::vector<std::string>> listFromPreferenceText(std::string_view text) {
    if (!isEnclosed(text, '(', ')')) return std::nullopt;
    std::vector<std::string> list;
    for (const auto part : parts(text)) list.push_back(unescape(part));
    return list;
}

std::optional<std::map<std::string, std::string, std::less<>>> dictionaryFromPreferenceText(
    std::string_view text) {
    if (!isEnclosed(text, '{', '}')) return std::nullopt;
    std::map<std::string, std::string, std::less<>> dictionary;
    for (const auto part : parts(text)) {
        const auto equals = findUnescaped(part, '=');
        const auto value = equals < part.size() ? part.substr(equals + 1) : std::string_view();
        dictionary.insert_or_assign(unescape(part.substr(0, equals)), unescape(value));
    }
    return dictionary;
}

}  // namespace reelvane
