#include "support/shell_quoting.h"

#include <algorithm>
#include <array>

#include "support/strings.h"

namespace reelvane {
namespace {

constexpr bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-_./:@%+,").find(c) != std::string_view::npos;
}

constexpr bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

/// Three octal digits, so that a digit which follows is never taken in.
std::string octal(char c) {
    const auto byte = static_cast<unsigned char>(c);
    const std::array<char, 4> text{'\\', char('0' + (byte >> 6U)), char('0' + ((byte >> 3U) & 7U)),
                                   char('0' + (byte & 7U))};
    return {text.begin(), text.end()};
}

std::string withEscapes(std::string_view word) {
    std::string quoted = "$'";
    for (const char c : word) {
        if (c == '\n') {
            quoted += "\\n";
        } else if (c == '\t') {
            quoted += "\\t";
        } else if (isControl(c)) {
            quoted += octal(c);
        } else {
            if (c == '\'' || c == '\\') quoted += '\\';
            quoted += c;
        }
    }
    return quoted + "'";
}

}  // namespace

std::string shellQuoted(std::string_view word) {
    if (!word.empty() && std::ranges::all_of(word, isPlain)) return std::string(word);
    if (std::ranges::any_of(word, isControl)) return withEscapes(word);
    return "'" + Fennimar::replaced(word, "'", R"('\'')") + "'";
}

std::string shellQuotedLine(std::span<const std::string> words) {
    std::string line;
    for (const auto& word : words) {
        if (!line.empty()) line += ' ';
        line += shellQuoted(word);
    }
    return line;
}

}  // namespace reelvane
