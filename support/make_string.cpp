#include "support/make_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

#include "support/strings.h"

namespace reelvane {
namespace {

/// One place of a format text, read from behind its per cent sign.
struct Place {
    bool leftAligned = false;
    bool zeroPadded = false;
    char positiveSign = 0;  ///< what stands before a number that is not negative; 0: nothing
    std::size_t width = 0;
    std::optional<int> precision{};
    char conversion = 0;
    std::size_t length = 0;  ///< of the place's text, without the per cent sign
};

constexpr std::size_t kMaximumWidth = 4096;  // a mistyped width must not fill the memory
constexpr int kMaximumPrecision = 300;

std::size_t readNumber(std::string_view text, std::size_t& at) {
    std::size_t number = 0;
    for (; at < text.size() && Fennimar::isDigit(text[at]); ++at) {
        number = std::min(number * 10 + static_cast<std::size_t>(text[at] - '0'), kMaximumWidth);
    }
    return number;
}

/// Absent when no known place stands there.
std::optional<Place> readPlace(std::string_view text) {
    Place place;
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        if (text[at] == '-') {
            place.leftAligned = true;
        } else if (text[at] == '0') {
            place.zeroPadded = true;
        } else if (text[at] == '+' || (text[at] == ' ' && place.positiveSign == 0)) {
            place.positiveSign = text[at];
        } else {
            break;
        }
    }
    place.width = readNumber(text, at);
    if (at < text.size() && text[at] == '.') {
        ++at;
        place.precision = std::min(static_cast<int>(readNumber(text, at)), kMaximumPrecision);
    }
    const std::string_view lengthModifiers = "hlqzjt";
    while (at < text.size() && lengthModifiers.find(text[at]) != std::string_view::npos) ++at;
    if (at == text.size()) return std::nullopt;
    if (std::string_view("@sidux%f").find(text[at]) == std::string_view::npos) return std::nullopt;
    place.conversion = text[at];
    place.length = at + 1;
    return place;
}

template <typename... Arguments>
std::string characters(Arguments... arguments) {
    std::array<char, 1024> buffer{};  // the largest double has 309 digits before its point
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), arguments...);
    return {buffer.data(), result.ptr};
}

std::string plainText(const FormatArgument::Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* real = std::get_if<double>(&value)) return characters(*real);
    return characters(std::get<long long>(value));
}

long long integerOf(const FormatArgument::Value& value) {
    if (const auto* integer = std::get_if<long long>(&value)) return *integer;
    const double real = std::get<double>(value);
    if (std::isnan(real)) return 0;
    constexpr double kLimit = 9223372036854775808.0;  // 2^63
    if (real >= kLimit) return std::numeric_limits<long long>::max();
    if (real < -kLimit) return std::numeric_limits<long long>::min();
    return static_cast<long long>(real);
}

double realOf(const FormatArgument::Value& value) {
    if (const auto* real = std::get_if<double>(&value)) return *real;
    return static_cast<double>(std::get<long long>(value));
}

std::string padded(const Place& place, const std::string& sign, const std::string& text,
                   bool zeros) {
    const auto size = sign.size() + text.size();
    if (size >= place.width) return sign + text;
    const auto missing = place.width - size;
    if (place.leftAligned) return sign + text + std::string(missing, ' ');
    if (zeros) return sign + std::string(missing, '0') + text;
    return std::string(missing, ' ') + sign + text;
}

std::string number(const Place& place, const FormatArgument::Value& value) {
    std::string digits;
    bool zeros = place.zeroPadded;
    if (place.conversion == 'f') {
        const double real = realOf(value);
        digits = characters(real, std::chars_format::fixed, place.precision.value_or(6));
        zeros = zeros && std::isfinite(real);
    } else {
        const long long integer = integerOf(value);
        if (place.conversion == 'u') {
            digits = characters(static_cast<unsigned long long>(integer));
        } else if (place.conversion == 'x') {
            digits = characters(static_cast<unsigned long long>(integer), 16);
        } else {
            digits = characters(integer);
        }
    }
    std::string sign;
    if (digits.starts_with('-')) {
        sign = "-";
        digits.erase(0, 1);
    } else if (place.positiveSign != 0 && place.conversion != 'u' && place.conversion != 'x') {
        sign = place.positiveSign;
    }
    if (place.conversion != 'f' && place.precision) {
        const auto least = static_cast<std::size_t>(*place.precision);
        if (digits.size() < least) digits.insert(0, least - digits.size(), '0');
        zeros = false;
    }
    return padded(place, sign, digits, zeros);
}

std::string rendered(const Place& place, const FormatArgument::Value& value) {
    const bool takesText = place.conversion == '@' || place.conversion == 's';
    if (!takesText && !std::holds_alternative<std::string>(value)) return number(place, value);
    auto text = plainText(value);
    if (place.conversion == 's' && place.precision) {
        text.resize(std::min(text.size(), static_cast<std::size_t>(*place.precision)));
    }
    return padded(place, {}, text, false);
}

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

std::string formatString(std::string_view format, std::initializer_list<FormatArgument> arguments) {
    std::string result;
    const auto* next = arguments.begin();
    while (true) {
        const auto sign = format.find('%');
        result += format.substr(0, sign);
        if (sign == std::string_view::npos) return result;
        format.remove_prefix(sign + 1);
        const auto place = readPlace(format);
        if (!place) {  // no place: it stands for itself
            result += '%';
            continue;
        }
        format.remove_prefix(place->length);
        if (place->conversion == '%') {
            result += '%';
        } else if (next == arguments.end()) {
            result += "(null)";
        } else {
            result += rendered(*place, (next++)->value());
        }
    }
}

std::string fileSizeText(std::uint64_t bytes) {
    static constexpr auto kUnits = std::to_array<std::string_view>({"kB", "MB", "GB", "TB", "PB"});
    if (bytes < 1000) return makeString("%lu %@", bytes, bytes == 1 ? "byte" : "bytes");
    auto value = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    // 999.5 would be rounded up to a fourth digit.
    while (value >= 999.5 && unit + 1 < kUnits.size()) {
        value /= 1000;
        ++unit;
    }
    const std::string_view format = value < 9.995   ? "%.2f %@"
                                    : value < 99.95 ? "%.1f %@"
                                                    : "%.0f %@";
    return makeString(format, value, kUnits.at(unit));
}

std::string formattedTimeFromTimeInterval(double seconds) {
    if (!std::isfinite(seconds)) return "?";
    // Adding zero turns a negative zero into a plain one.
    const double minutes = std::trunc(seconds / 60) + 0.0;
    const double rest = std::trunc(std::fmod(seconds, 60)) + 0.0;
    if (minutes == 0) return makeString("%.0fs", rest);
    return makeString("%.0fm %.0fs", minutes, rest);
}

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
