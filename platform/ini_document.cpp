#include "platform/ini_document.h"

#include <cstddef>
#include <glib.h>
#include <utility>

#include "platform/ini_escapes.h"

namespace reelvane {

namespace {

struct GlibFree {
    void operator()(char* text) const { g_free(text); }
    void operator()(char** texts) const { g_strfreev(texts); }
};
using GlibText = std::unique_ptr<char, GlibFree>;
using GlibTexts = std::unique_ptr<char*, GlibFree>;

/// Keys as they stand in the file, which need not be as we would write them.
std::map<std::string, std::string, std::less<>> writtenKeys(GKeyFile* file,
                                                            const std::string& group) {
    std::map<std::string, std::string, std::less<>> written;
    const GlibTexts keys(g_key_file_get_keys(file, group.c_str(), nullptr, nullptr));
    for (char* const* key = keys.get(); key != nullptr && *key != nullptr; ++key) {
        written.insert_or_assign(unescapedIniKey(*key), *key);
    }
    return written;
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
    for (const auto& [key, written] : writtenKeys(file_.get(), group_)) {
        const GlibText value(
            g_key_file_get_value(file_.get(), group_.c_str(), written.c_str(), nullptr));
        if (value) values.emplace(key, unescapedIniValue(value.get()));
    }
    return values;
}

void IniDocument::setValues(const PreferenceValues& values) {
    const auto before = this->values();
    const auto written = writtenKeys(file_.get(), group_);
    for (const auto& [key, name] : written) {
        if (values.contains(key)) continue;
        g_key_file_remove_key(file_.get(), group_.c_str(), name.c_str(), nullptr);
    }
    for (const auto& [key, value] : values) {
        const auto old = before.find(key);
        if (old != before.end() && old->second == value) continue;
        const auto known = written.find(key);
        const auto name = known != written.end() ? known->second : escapedIniKey(key);
        g_key_file_set_value(file_.get(), group_.c_str(), name.c_str(),
                             escapedIniValue(value).c_str());
    }
}

std::string IniDocument::text() const {
    std::size_t size = 0;
    const GlibText text(g_key_file_to_data(file_.get(), &size, nullptr));
    return {text.get(), size};
}

}  // namespace reelvane
