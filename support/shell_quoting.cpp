#include "support/shell_quoting.h"

#include <algorithm>
#include <array>

#include "support/strings.h"
#include "support/utf8.h"

namespace reelvane {
namespace {

constexpr bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-_./:@%+,").find(c) != std::string_view::npos;
}

/// Three octal digits, so that a digit which follows is never taken in.
std::string octal(char c) {
    const auto byte = static_cast<unsigned char>(c);
    const std::array<char, 4> text{'\\', char('0' + (byte >> 6U)), char('0' + ((byte >> 3U) & 7U)),
                                   char('0' + (byte & 7U))};
    return {text.begin(), text.end()};
}

/// Calls `take` with each character and whether it is one to be shown.
template <typename Take>
void forEachCharacter(std::string_view word, Take take) {
    while (!word.empty()) {
        const auto character = decodeUtf8(word);
        take(word.substr(0, character.length), character.valid && !isSteering(character.value));
        word.remove_prefix(character.length);
    }
}

bool isShown(std::string_view word) {
    bool allShown = true;
    forEachCharacter(word, [&](std::string_view, bool shown) { allShown = allShown && shown; });
    return allShown;
}

std::string withEscapes(std::string_view word) {
    std::string quoted = "$'";
    forEachCharacter(word, [&](std::string_view character, bool shown) {
        if (character == "\n") {
            quoted += "\\n";
        } else if (character == "\t") {
            quoted += "\\t";
        } else if (!shown) {
            for (const char c : character) quoted += octal(c);
        } else {
            if (character == "'" || character == "\\") quoted += '\\';
            quoted += character;
        }
    });
    return quoted + "'";
}

}  // namespace

std::string shellQuoted(std::string_view word) {
    if (!word.empty() && std::ranges::all_of(word, isPlain)) return std::string(word);
    if (!isShown(word)) return withEscapes(word);
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
