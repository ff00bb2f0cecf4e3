#include "media/text_encoding.h"

#include <algorithm>
#include <array>
#include <iconv.h>
#include <memory>
#include <span>
#include <uchardet/uchardet.h>

#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::size_t kEnough = std::size_t{256} * 1024;  // more text makes no guess surer
constexpr char kEscape = '\x1B';

/// The encodings that the detector's answer can stand for: it does not tell relatives apart. The
/// first that suits the text best is taken. An answer that is not listed is wrong more often than
/// right (Mac and DOS texts).
struct Family {
    std::string_view detected;
    std::array<std::string_view, 2> members;
};
constexpr auto kFamilies = std::to_array<Family>({
    {"WINDOWS-1252", {"CP1252", "ISO-8859-15"}},
    {"ISO-8859-1", {"CP1252", "ISO-8859-15"}},
    {"ISO-8859-15", {"CP1252", "ISO-8859-15"}},
    {"WINDOWS-1250", {"CP1250", "ISO-8859-2"}},
    {"ISO-8859-2", {"CP1250", "ISO-8859-2"}},
    {"ISO-8859-16", {"ISO-8859-16", "CP1250"}},
    {"WINDOWS-1251", {"CP1251", "CP1251"}},
    {"ISO-8859-5", {"ISO-8859-5", "ISO-8859-5"}},
    {"KOI8-R", {"KOI8-R", "KOI8-R"}},
    {"IBM866", {"IBM866", "IBM866"}},
    {"WINDOWS-1253", {"CP1253", "ISO-8859-7"}},
    {"ISO-8859-7", {"CP1253", "ISO-8859-7"}},
    {"WINDOWS-1254", {"CP1254", "CP1254"}},
    {"ISO-8859-9", {"CP1254", "CP1254"}},
    {"ISO-8859-3", {"ISO-8859-3", "CP1254"}},
    {"WINDOWS-1255", {"CP1255", "CP1255"}},
    {"ISO-8859-8", {"CP1255", "CP1255"}},
    {"WINDOWS-1256", {"CP1256", "CP1256"}},
    {"ISO-8859-6", {"ISO-8859-6", "ISO-8859-6"}},
    {"WINDOWS-1257", {"CP1257", "ISO-8859-13"}},
    {"ISO-8859-13", {"CP1257", "ISO-8859-13"}},
    {"ISO-8859-4", {"ISO-8859-4", "CP1257"}},
    {"ISO-8859-10", {"ISO-8859-10", "CP1252"}},
    {"WINDOWS-1258", {"CP1258", "CP1252"}},
    {"TIS-620", {"CP874", "CP874"}},
    {"ISO-8859-11", {"CP874", "CP874"}},
    {"SHIFT_JIS", {"CP932", "SHIFT_JIS"}},
    {"EUC-JP", {"EUC-JP", "EUC-JP"}},
    {"ISO-2022-JP", {"ISO-2022-JP", "ISO-2022-JP"}},
    {"GB18030", {"GB18030", "GB18030"}},
    {"BIG5", {"BIG5-HKSCS", "CP950"}},
    {"EUC-TW", {"EUC-TW", "EUC-TW"}},
    {"UHC", {"CP949", "EUC-KR"}},
    {"EUC-KR", {"CP949", "EUC-KR"}},
    {"ISO-2022-KR", {"ISO-2022-KR", "ISO-2022-KR"}},
});

class Converter {
public:
    explicit Converter(std::string_view from)
        : handle_(::iconv_open("UTF-8", std::string(from).c_str())) {}
    ~Converter() {
        if (isOpen()) ::iconv_close(handle_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    Converter(Converter&&) = delete;
    Converter& operator=(Converter&&) = delete;

    // The C interface has no better value for "none".
    // NOLINTNEXTLINE(performance-no-int-to-ptr,cppcoreguidelines-pro-type-cstyle-cast)
    [[nodiscard]] bool isOpen() const { return handle_ != (iconv_t)-1; }

    [[nodiscard]] std::optional<std::string> convert(std::string_view text) const {
        constexpr auto kFailed = static_cast<std::size_t>(-1);
        // Four bytes of UTF-8 for each byte are more than any encoding needs.
        std::string result(text.size() * 4 + 4, '\0');
        std::string copy(text);  // the interface wants it writable
        auto* from = copy.data();
        auto* to = result.data();
        auto fromLeft = copy.size();
        auto toLeft = result.size();
        if (::iconv(handle_, &from, &fromLeft, &to, &toLeft) == kFailed) return std::nullopt;
        if (::iconv(handle_, nullptr, nullptr, &to, &toLeft) == kFailed) return std::nullopt;
        result.resize(result.size() - toLeft);
        return result;
    }

private:
    iconv_t handle_;
};

std::string detectorsAnswer(std::string_view text) {
    const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(),
                                                                         &uchardet_delete);
    if (uchardet_handle_data(detector.get(), text.data(), text.size()) != 0) return {};
    uchardet_data_end(detector.get());
    return uchardet_get_charset(detector.get());
}

bool isAsciiLetter(char32_t value) {
    return (value >= 'a' && value <= 'z') || (value >= 'A' && value <= 'Z');
}

/// Signs of the encodings of one byte; all else that they hold are letters.
bool isSign(char32_t value) {
    if (value >= 0x80 && value < 0xC0) return value != 0xAA && value != 0xB5 && value != 0xBA;
    return value == 0xD7 || value == 0xF7 || (value >= 0x2B0 && value < 0x300) ||
           (value >= 0x2000 && value < 0x2C00);
}

// Where good texts have signs beside letters. Languages differ in which quotation marks open.
constexpr auto kBesideLetters =
    std::to_array<char32_t>({0xA0, 0xAB, 0xAD, 0xB4, 0xB7, 0xBB, 0x2010, 0x2011, 0x2013, 0x2014,
                             0x2018, 0x2019, 0x201C, 0x201D, 0x2026, 0x2039, 0x203A});
constexpr auto kAfterLetters = std::to_array<char32_t>({0xAE, 0xB0, 0xB2, 0xB3, 0xB9, 0x2122});
constexpr auto kBeforeLetters =
    std::to_array<char32_t>({0xA1, 0xA3, 0xA7, 0xA9, 0xBF, 0x201A, 0x201E, 0x20AC});

bool isOneOf(char32_t value, std::span<const char32_t> characters) {
    return std::ranges::find(characters, value) != characters.end();
}

bool mayFollowLetter(char32_t sign) {
    return isOneOf(sign, kBesideLetters) || isOneOf(sign, kAfterLetters);
}

bool mayPrecedeLetter(char32_t sign) {
    return isOneOf(sign, kBesideLetters) || isOneOf(sign, kBeforeLetters);
}

/// How well a decoded text reads.
struct Reading {
    std::size_t letters = 0;    ///< outside ASCII
    std::size_t signs = 0;      ///< outside ASCII
    std::size_t misplaced = 0;  ///< signs beside letters that no good text has there
    bool hasControls = false;   ///< characters that no text has
};

Reading readingOf(std::string_view text) {
    Reading reading;
    bool afterLetter = false;
    char32_t lastSign = 0;  // just before this character
    while (!text.empty()) {
        const auto character = decodeUtf8(text);
        text.remove_prefix(character.length);
        const auto value = character.value;
        const bool outside = value >= 0x80;
        const bool sign = outside && isSign(value);
        const bool letter = isAsciiLetter(value) || (outside && !sign);
        if (letter && lastSign != 0 && !mayPrecedeLetter(lastSign)) ++reading.misplaced;
        if (sign && afterLetter && !mayFollowLetter(value)) ++reading.misplaced;
        lastSign = sign ? value : 0;
        afterLetter = letter;
        if (outside) ++(sign ? reading.signs : reading.letters);
        reading.hasControls |= (value >= 0x80 && value < 0xA0) || value == 0xFFFD ||
                               (value >= 0xE000 && value < 0xF900) || !character.valid;
    }
    return reading;
}

bool isPlausible(const Reading& reading) {
    constexpr std::size_t kOneIn = 5;
    return !reading.hasControls && reading.misplaced * kOneIn <= reading.letters + reading.signs;
}

/// The member of the family that the text reads best in; empty when it reads badly in each.
std::string_view bestMember(const Family& family, std::string_view text) {
    std::string_view best;
    std::size_t fewest = 0;
    for (const auto member : family.members) {
        const auto utf8 = decoded(text, member);
        if (!utf8) continue;
        const auto reading = readingOf(*utf8);
        if (!isPlausible(reading)) continue;
        const auto badness = reading.misplaced * 2 + reading.signs;
        if (!best.empty() && badness >= fewest) continue;
        best = member;
        fewest = badness;
    }
    return best;
}

}  // namespace

std::string_view byteOrderMark(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) return "UTF-8";
    if (text.starts_with(std::string_view("\xFF\xFE\0\0", 4))) return {};  // UTF-32
    if (text.starts_with("\xFF\xFE")) return "UTF-16LE";
    if (text.starts_with("\xFE\xFF")) return "UTF-16BE";
    return {};
}

std::optional<std::string> decoded(std::string_view text, std::string_view encoding) {
    const Converter converter(encoding);
    if (!converter.isOpen()) return std::nullopt;
    const auto mark = byteOrderMark(text);
    if (mark == "UTF-8") text.remove_prefix(3);
    if (mark.starts_with("UTF-16")) text.remove_prefix(2);
    return converter.convert(text);
}

std::vector<std::string_view> tellingLines(std::string_view text) {
    std::vector<std::string_view> lines;
    for (const auto line : Fennimar::split(text, "\n")) {
        const bool telling = std::ranges::any_of(line, [](char byte) {
            return static_cast<unsigned char>(byte) >= 0x80 || byte == kEscape;
        });
        if (telling) lines.push_back(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line);
    }
    return lines;
}

FoundEncoding findEncoding(std::string_view text) {
    if (!byteOrderMark(text).empty()) return {};
    // What shifts its meaning by escapes is ASCII to the eye.
    const bool shifts = text.find(kEscape) != std::string_view::npos;
    if (!shifts && Fennimar::isValidUtf8(text)) return {};
    std::string telling;
    for (const auto line : tellingLines(text)) {
        if (telling.size() + line.size() > kEnough) break;
        telling.append(line).push_back('\n');
    }
    const auto answer = detectorsAnswer(telling);
    // Mostly UTF-8: what does not fit is lost, and said to be, but no other encoding is better.
    if (answer == "UTF-8") return {};
    const auto* const family = std::ranges::find(kFamilies, answer, &Family::detected);
    const auto best = family == kFamilies.end() ? std::string_view{} : bestMember(*family, telling);
    if (best.empty()) return {.kind = FoundEncoding::Kind::Unknown};
    return {.kind = FoundEncoding::Kind::Named, .name = std::string(best)};
}

}  // namespace reelvane
