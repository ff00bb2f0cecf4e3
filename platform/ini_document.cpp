#include "platform/ini_document.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <glib.h>
#include <iterator>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace reelvane {

namespace {

struct GlibFree {
    void operator()(char* text) const { g_free(text); }
    void operator()(char** texts) const { g_strfreev(texts); }
};
using GlibText = std::unique_ptr<char, GlibFree>;
using GlibTexts = std::unique_ptr<char*, GlibFree>;

/// Tells of each key as it stands in the file, which need not be as we would write it.
template <typename Told>
void forEachKey(GKeyFile* file, const std::string& group, Told told) {
    const GlibTexts keys(g_key_file_get_keys(file, group.c_str(), nullptr, nullptr));
    for (char* const* key = keys.get(); key != nullptr && *key != nullptr; ++key) {
        told(unescapedIniKey(*key), *key);
    }
}

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

PreferenceValues IniDocument::values() const {
    PreferenceValues values;
    forEachKey(file_.get(), group_, [&](std::string key, const char* written) {
        const GlibText value(g_key_file_get_value(file_.get(), group_.c_str(), written, nullptr));
        if (value) values.insert_or_assign(std::move(key), unescapedIniValue(value.get()));
    });
    return values;
}

void IniDocument::change(const PreferenceValues& before, const PreferenceValues& after) {
    // Of all the keys only these are looked at twice: there may be very many.
    std::map<std::string, std::string, std::less<>> written;
    for (auto& key : differences(before, after)) written.emplace(key, escapedIniKey(key));
    forEachKey(file_.get(), group_, [&](const std::string& key, const char* name) {
        if (const auto changed = written.find(key); changed != written.end()) {
            changed->second = name;
        }
    });
    for (const auto& [key, name] : written) {
        const auto value = after.find(key);
        if (value == after.end()) {
            g_key_file_remove_key(file_.get(), group_.c_str(), name.c_str(), nullptr);
        } else {
            g_key_file_set_value(file_.get(), group_.c_str(), name.c_str(),
                                 escapedIniValue(value->second).c_str());
        }
    }
}

std::string IniDocument::text() const {
    std::size_t size = 0;
    const GlibText text(g_key_file_to_data(file_.get(), &size, nullptr));
    return {text.get(), size};
}

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
