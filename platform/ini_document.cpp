#include "platform/ini_document.h"

#include <algorithm>
#include <cstddef>
#include <glib.h>
#include <iterator>
#include <map>
#include <utility>
#include <vector>

#include "platform/ini_escapes.h"

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

}  // namespace reelvane
