#include "platform/ini_document.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <glib.h>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace reelvane {

namespace {

constexpr auto kFormatKey = "FileFormat";
constexpr auto kFormat = "2";
/// Keys that are not the user's. The first one is GLib's own.
constexpr auto kReservedKeys = std::to_array<std::string_view>({"Encoding", kFormatKey});

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

std::string writtenKey(std::string_view key) {
    if (key.empty()) return "%";
    const bool reserved = std::ranges::find(kReservedKeys, key) != kReservedKeys.end();
    std::string text;
    for (std::size_t i = 0; i < key.size(); ++i) {
        const bool plain = isPlainInKey(key, i) && (i > 0 || !reserved);
        text += plain ? std::string(1, key[i]) : '%' + hexadecimal(key[i]);
    }
    return text;
}

std::string readKey(std::string_view text) {
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

/// What the text's "\{0A}" at `position` stands for.
std::optional<char> escapedByteAt(std::string_view text, std::size_t position) {
    constexpr std::size_t kLength = 5;
    const auto escape = text.substr(position, kLength);
    const bool is = escape.size() == kLength && escape.starts_with("\\{") && escape.back() == '}';
    return is ? byteAt(escape, 2) : std::nullopt;
}

std::string writtenValue(std::string_view value) {
    std::string text;
    const char* valid = value.data();  // the end of the UTF-8 that begins here
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char* const here = value.data() + i;
        if (here >= valid) g_utf8_validate_len(here, value.size() - i, &valid);
        const bool blankAtEnd = *here == ' ' && (i == 0 || i + 1 == value.size());
        const bool plain = here < valid && !g_ascii_iscntrl(*here) && !blankAtEnd &&
                           !escapedByteAt(value, i);  // which would be read as another byte
        text += plain ? std::string(1, *here) : "\\{" + hexadecimal(*here) + "}";
    }
    return text;
}

std::string readValue(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = escapedByteAt(text, i);
        value += byte.value_or(text[i]);
        if (byte) i += 4;
    }
    return value;
}

/// A value of the format without a number.
std::string readFormerValue(std::string_view text) {
    static constexpr std::string_view kLetters = "nrts\\";
    static constexpr std::string_view kBytes = "\n\r\t \\";
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        value += text[i];
        if (text[i] != '\\' || i + 1 == text.size()) continue;
        const auto letter = kLetters.find(text[i + 1]);
        if (letter != std::string_view::npos) {
            value.back() = kBytes[letter];
            ++i;
        } else if (const auto byte = byteAt(text, i + 2); byte && text[i + 1] == 'x') {
            value.back() = *byte;
            i += 3;
        }
    }
    return value;
}

struct GlibFree {
    void operator()(char* text) const { g_free(text); }
    void operator()(char** texts) const { g_strfreev(texts); }
};
using GlibText = std::unique_ptr<char, GlibFree>;
using GlibTexts = std::unique_ptr<char*, GlibFree>;

/// The keys that only one of both has, or that have another value in each.
std::vector<std::string> differences(const PreferenceValues& before,
                                     const PreferenceValues& after) {
    PreferenceValues changes;
    std::ranges::set_symmetric_difference(before, after, std::inserter(changes, changes.end()));
    std::vector<std::string> keys;
    for (const auto& [key, value] : changes) keys.push_back(key);
    return keys;
}

}  // namespace

void IniDocument::Free::operator()(GKeyFile* file) const {
    g_key_file_free(file);
}

IniDocument::IniDocument(std::string group) : group_(std::move(group)), file_(g_key_file_new()) {}

std::optional<IniDocument> IniDocument::parse(const std::string& text, std::string group) {
    // GLib would take a line for ended; a crash leaves such bytes on some file systems.
    if (text.find('\0') != std::string::npos) return std::nullopt;
    IniDocument document(std::move(group));
    constexpr auto kFlags = static_cast<GKeyFileFlags>(int{G_KEY_FILE_KEEP_COMMENTS} |
                                                       int{G_KEY_FILE_KEEP_TRANSLATIONS});
    if (g_key_file_load_from_data(document.file_.get(), text.data(), text.size(), kFlags,
                                  nullptr) == 0) {
        return std::nullopt;
    }
    return document;
}

bool IniDocument::hasFormerFormat() const {
    return g_key_file_has_key(file_.get(), group_.c_str(), kFormatKey, nullptr) == FALSE;
}

std::vector<IniDocument::Line> IniDocument::lines() const {
    const auto read = hasFormerFormat() ? readFormerValue : readValue;
    const GlibTexts names(g_key_file_get_keys(file_.get(), group_.c_str(), nullptr, nullptr));
    std::vector<Line> lines;
    for (char* const* name = names.get(); name != nullptr && *name != nullptr; ++name) {
        if (std::string_view(*name) == kFormatKey) continue;
        const GlibText value(g_key_file_get_value(file_.get(), group_.c_str(), *name, nullptr));
        if (value) {
            lines.push_back({.name = *name, .key = readKey(*name), .value = read(value.get())});
        }
    }
    return lines;
}

void IniDocument::write(const std::string& name, const std::string& value) {
    g_key_file_set_value(file_.get(), group_.c_str(), name.c_str(), writtenValue(value).c_str());
}

PreferenceValues IniDocument::values() const {
    PreferenceValues values;
    for (auto& line : lines()) values.insert_or_assign(std::move(line.key), std::move(line.value));
    return values;
}

void IniDocument::change(const PreferenceValues& before, const PreferenceValues& after) {
    const auto lines = this->lines();
    if (hasFormerFormat()) {
        g_key_file_set_value(file_.get(), group_.c_str(), kFormatKey, kFormat);
        for (const auto& line : lines) write(line.name, line.value);
    }
    // Of all the keys only these are looked at twice: there may be very many.
    std::map<std::string, std::string, std::less<>> names;
    for (auto& key : differences(before, after)) names.emplace(key, writtenKey(key));
    for (const auto& line : lines) {
        if (const auto changed = names.find(line.key); changed != names.end()) {
            changed->second = line.name;
        }
    }
    for (const auto& [key, name] : names) {
        const auto value = after.find(key);
        if (value == after.end()) {
            g_key_file_remove_key(file_.get(), group_.c_str(), name.c_str(), nullptr);
        } else {
            write(name, value->second);
        }
    }
}

std::string IniDocument::text() const {
    std::size_t size = 0;
    const GlibText text(g_key_file_to_data(file_.get(), &size, nullptr));
    return {text.get(), size};
}

}  // namespace reelvane
